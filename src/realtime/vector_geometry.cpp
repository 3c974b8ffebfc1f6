#include "realtime/vector_geometry.h"

#include "core/regional.h"

#include <cmath>

namespace fm {
namespace {
const double c = std::cos(kObliqueAngle), s = std::sin(kObliqueAngle);
}  // namespace

DrawArea DrawArea::Fit(int widthLeft, int heightLeft) {
    DrawArea a;
    a.W = widthLeft;
    a.H = a.W + 10;
    if (heightLeft - 10 < a.H) a.H = heightLeft - 10;
    a.W = a.H - 10;
    a.L = a.T = a.H - 30;
    return a;
}

std::vector<QLineF> FixedLines(const DrawArea &a) {
    const double L = a.L, cx = L * c, cy = L * s, d = 5;
    const double raw[][4] = {
        {0, 0, L, 0},
        {0, 0, 0, L},
        {0, 0, cx, cy},
        {L, d, L, -d},
        {L + d, 0, L, d},
        {L + d, 0, L, -d},
        {cx + s * d, cy - c * d, cx - s * d, cy + c * d},
        {cx + c * d, cy + s * d, cx + s * d, cy - c * d},
        {cx + c * d, cy + s * d, cx - s * d, cy + c * d},
        {-d, L, d, L},
        {0, L + d, d, L},
        {0, L + d, -d, L},
    };
    std::vector<QLineF> out;
    for (const auto &r : raw) out.emplace_back(a.Screen(r[0], r[1]), a.Screen(r[2], r[3]));
    for (int i = 1; i <= 5; ++i) {
        const double t = double(a.T * i) / 5;
        out.emplace_back(a.Screen(t, 2), a.Screen(t, -2));
        out.emplace_back(a.Screen(t * c - 2, t * s), a.Screen(t * c + 2, t * s));
        out.emplace_back(a.Screen(-2, t), a.Screen(2, t));
    }
    return out;
}

std::array<QPointF, 3> LetterPositions(const DrawArea &a) {
    const double cx = a.L * c, cy = a.L * s;
    return {QPointF(5, 3), QPointF(a.W - 13, a.H - 23), QPointF(a.ScreenX(cx) - 10, a.ScreenY(cy) - 10)};
}

VectorPlacement PlaceVector(const DrawArea &a, double x, double y, double z, int scaleIndex) {
    VectorPlacement p;
    const double m = kScaleTable[size_t(scaleIndex)];
    p.Px = x * m / 200 * a.T;
    p.Py = y * m / 200 * a.T;
    p.Pz = z * m / 200 * a.T;
    p.sx = p.Px + c * p.Py;
    p.sy = p.Pz + s * p.Py;
    p.by = s * p.Py;
    p.bx = c * p.Py;
    p.vettore = QLineF(a.Screen(0, 0), a.Screen(p.sx, p.sy));
    p.xProiez = QLineF(a.Screen(p.Px, 0), a.Screen(p.sx, p.by));
    p.yProiez = QLineF(a.Screen(p.bx, p.by), a.Screen(p.sx, p.by));
    p.zProiez = QLineF(a.Screen(p.sx, p.sy), a.Screen(p.sx, p.by));
    return p;
}

MeterReading AxisMeter(int axis, float v, double lowRange, double highRange) {
    static const char16_t *low[] = {u"\\B\\x \\= #0.00 µT", u"\\B\\y \\= #0.00 µT", u"\\B\\z \\= #0.00 µT"};
    static const char16_t *high[] = {u"\\B\\x \\= #0.0 µT", u"\\B\\y \\= #0.0 µT", u"\\B\\z \\= #0.0 µT"};
    MeterReading m;
    m.high = !(v < lowRange);
    m.fullScale = m.high ? highRange : lowRange;
    m.fraction = v / m.fullScale;
    m.text = FormatNumber(v, QStringView(m.high ? high[axis] : low[axis]));
    m.format = m.high ? QStringLiteral("#0.0") : QStringLiteral("#0.00");
    return m;
}

MeterReading ResultantMeter(double r, double lowRange, double highRange) {
    const double q = std::sqrt(3.0);
    MeterReading m;
    m.high = !(r < lowRange * q);
    m.fullScale = m.high ? RoundHalfEven(highRange * q, 2) : RoundHalfEven(lowRange * q, 2);
    m.fraction = r / ((m.high ? highRange : lowRange) * q);
    m.text = FormatNumber(r, u"\\R\\S\\S  = #0.00 µT");
    return m;
}

QString TipCaption(float x, float y, float z, const std::array<QString, 3> &f) {
    return QStringLiteral("B (") + FormatNumber(x, f[0]) + QStringLiteral(" : ") + FormatNumber(y, f[1]) +
           QStringLiteral(" : ") + FormatNumber(z, f[2]) + QLatin1Char(')');
}

AxisLimits StripAxis(bool logarithmic, float rtMax, float rtMin) {
    AxisLimits a;
    if (logarithmic) {
        const double R = rtMax;
        a.minimum = 0.0001;
        a.maximum = rtMax + R / 3 > a.minimum ? rtMax + R / 3 : a.minimum + 0.0001;
        a.increment = 0;
    } else {
        const double R = double(rtMax) - rtMin;
        a.minimum = 0;
        a.maximum = rtMax + R / 10 > 0 ? rtMax + R / 10 : 0.0001;
        a.increment = std::abs(R) / 30;
    }
    return a;
}
}  // namespace fm
