#include "printing/page_text.h"

#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"

#include <cmath>

namespace fm {
namespace {
int UnitName(const QString &unit) {
    if (unit == QLatin1String("s")) return 3013;
    if (unit == QLatin1String("n")) return 3012;
    if (unit == QLatin1String("h")) return 3014;
    if (unit == QLatin1String("d")) return 3015;
    return 0;
}
int Round(double v) {
    return int(std::lround(v));
}
}  // namespace

QString PrintSummaryLine() {
    const MeasurementData &d = Data();
    const QChar blank = QLatin1Char(' ');
    QString line = QStringLiteral("[ ") + QString::number(d.DataCount) + blank + ResString(4031) +
                   QStringLiteral(". ") + ResString(4080) + blank + GeneralDate(d.DataStart) + blank;
    if (const int unit = UnitName(d.DataStepUnit))
        line += ResString(4081) + blank + QString::number(d.DataStep) + blank + ResString(unit);
    return line + QStringLiteral(" ]");
}

QString PrintVersionLine() {
    return QStringLiteral("Fluxmere QL540. SW Rev. %1.%2.%3")
        .arg(FLUXMERE_VERSION_MAJOR)
        .arg(FLUXMERE_VERSION_MINOR)
        .arg(FLUXMERE_VERSION_REVISION);
}

QString PrintedOnLine(double date) {
    return ResString(349) + GeneralDate(date);
}

int LineStartX(int alignment, double scaleWidth, double textWidth) {
    switch (alignment) {
    case int(LineAlign::Left): return 50;
    case int(LineAlign::Right): return Round(scaleWidth - textWidth - 50);
    case int(LineAlign::Centre): return Round((scaleWidth - textWidth) / 2);
    default: return 0;
    }
}

double FitFontSize(double size, double scaleWidth, const std::function<double(double)> &apply,
                   const std::function<double()> &width) {
    while (width() + 100 > scaleWidth && size > 1) {
        const double taken = apply(size - 1);
        if (taken == size) break;  // the device rounds it back: no smaller size to be had
        size = taken;
    }
    return size;
}

QRect PrintChartRect(bool landscape, double w, double h) {
    if (landscape) return QRect(QPoint(100, 100), QPoint(Round(w - 100), Round(h - 100)));
    // The bottom is the height formula itself, not the top plus it.
    const double height = (h - 200) * 0.74;
    return QRect(QPoint(100, Round((h - height) / 2)), QPoint(Round(w - 100), Round(height)));
}
}  // namespace fm
