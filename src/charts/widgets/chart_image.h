#pragma once
// The "save as image" action the chart windows share: the dialog, then the export in
// the format of the filter in force.
#include <QString>

class QWidget;

namespace fm {
class ChartControl;
// jpegWmfFilter: the first two entries (JPEG, metafile) as the window words them;
// PNG, SVG and PDF follow.
void SaveChartImage(ChartControl *chart, QWidget *parent, const QString &title, const QString &jpegWmfFilter);
// The image of the chart in the format its extension names (JPEG when none fits).
bool ExportChartImage(ChartControl *chart, const QString &file);
}  // namespace fm
