#pragma once
// The oblique three-axis drawing of the live vector and its level meters, worked out
// without a window: drawing coordinates have the origin where the axes meet, x to the
// right and y up; the surface's y runs down.
#include <QLineF>
#include <QPointF>
#include <QString>
#include <array>
#include <vector>

namespace fm {
inline constexpr double kObliqueAngle = 1.0471975511966667;  // 60 degrees, that exact constant
// Multipliers of the vector scale; the buttons show the field of one tick division.
inline constexpr std::array<double, 9> kScaleTable = {400, 200, 80, 40, 20, 8, 4, 2, 0.8};
inline constexpr std::array<const char *, 9> kScaleCaptions = {".1", ".2", ".5", "1", "2",
                                                               "5",  "10", "20", "50"};

struct DrawArea {
    int H = 260, W = 250, L = 230, T = 230;  // height, width, axis length, tick span
    double ScreenX(double x) const { return x + 10; }
    double ScreenY(double y) const { return (H - 10) - y; }
    QPointF Screen(double x, double y) const { return {ScreenX(x), ScreenY(y)}; }
    // The relations every resize keeps, from the width left for the drawing.
    static DrawArea Fit(int widthLeft, int heightLeft);
};

// Axes, arrow heads and ticks, on the surface.
std::vector<QLineF> FixedLines(const DrawArea &a);
// Where the axis letters stand (left, top), z, x, y.
std::array<QPointF, 3> LetterPositions(const DrawArea &a);

struct VectorPlacement {
    double Px = 0, Py = 0, Pz = 0, sx = 0, sy = 0, bx = 0, by = 0;
    QLineF vettore, xProiez, yProiez, zProiez;  // on the surface
};
VectorPlacement PlaceVector(const DrawArea &a, double x, double y, double z, int scaleIndex);

// One level meter's reading: which range, where the mask's left edge goes, the text.
struct MeterReading {
    bool high = false;
    double fraction = 0;  // of the meter's width
    double fullScale = 0;
    QString text;
    QString format;  // of the tip's caption
};
// Axis meters: index 0 to 2 (X, Y, Z). A sample's axis is the float it is stored as.
MeterReading AxisMeter(int axis, float v, double lowRange, double highRange);
// The resultant worked out in doubles from the axes; a stored float one would show
// the digits of its widening.
MeterReading ResultantMeter(double r, double lowRange, double highRange);
MeterReading ResultantMeter(float r, double lowRange, double highRange) = delete;
// "B (x : y : z)" with each axis in the format of its meter.
QString TipCaption(float x, float y, float z, const std::array<QString, 3> &formats);

// The strip chart's left axis after a sample: minimum, maximum, increment.
struct AxisLimits {
    double minimum = 0, maximum = 1, increment = 0;
};
AxisLimits StripAxis(bool logarithmic, float rtMax, float rtMin);
}  // namespace fm
