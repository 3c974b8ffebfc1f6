#pragma once
// The texts and the arithmetic of a printed page, apart from any device: the summary
// line under the title, the footer's two texts, where a line starts, how small a long
// line's font must get, and the chart's rectangle.
#include <QRect>
#include <QString>
#include <functional>

namespace fm {
// "[ 100 Campioni. Inizio <date> Passo 10 secondi ]"; a step unit that is none of the
// four letters leaves the step out.
QString PrintSummaryLine();
// "Fluxmere QL540. SW Rev. 3.0.19"
QString PrintVersionLine();
// Language string 349 directly followed by the date and time given.
QString PrintedOnLine(double date);

enum class LineAlign { Left = 0, Right = 1, Centre = 2 };
// CurrentX of a line of `textWidth` on a page `scaleWidth` wide (twips); any other
// alignment value starts at 0.
int LineStartX(int alignment, double scaleWidth, double textWidth);
// The font size at which text fits: smaller a point at a time while the text plus 100
// twips is wider than the page; stops when a smaller size is not taken. `apply` sets a
// size and gives back the size the device took, `width` measures the text at it.
double FitFontSize(double size, double scaleWidth, const std::function<double(double)> &apply,
                   const std::function<double()> &width);

// The chart's rectangle in printer pixels on a page of W x H printer pixels.
QRect PrintChartRect(bool landscape, double w, double h);
}  // namespace fm
