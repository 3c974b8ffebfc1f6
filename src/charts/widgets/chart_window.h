#pragma once
// What the chart windows share: the toolbar (save, print, close), the chart beside its
// panel, and a row of the trace keys.
#include <QColor>
#include <QString>
#include <cstdint>
#include <functional>

class QCheckBox;
class QGridLayout;
class QLabel;
class QToolBar;
class QWidget;

namespace fm {
// Save calls `save`, print prints the chart of `kind` ("TE", "ST", "RF"), close closes
// the form's window.
QToolBar *ChartToolbar(QWidget *form, std::function<void()> save, const char *kind);
// The chart takes the room; the toolbar and the panel stand on its right.
void LayOutChartWindow(QWidget *form, QWidget *chart, QToolBar *toolbar, QWidget *panel);

struct TraceKey {
    QLabel *line, *name;
    QCheckBox *hide;
};
// Row k of the panel's grid: the trace's colour, its name (text `tag`, by default
// 4015 + k) and "Hide".
TraceKey AddTraceKey(QGridLayout *grid, QWidget *panel, int k, QColor color, int tag = 0,
                     const char *caption = "Field");

class ChartControl;
// The date under point p: the data set's start plus p steps, the date above the time.
// The labels keep the dates of this drawing: a failed load later must not change them.
std::function<QString(int)> SampleDateLabels();
// The samples a chart may draw from arrays of `held` slots: never past their end.
int32_t DrawableSamples(size_t held);
// The cross of a chart on sample s (from the data list): sample 0 (a heading line) or
// one past the end hides it; a hidden trace keeps it as it is.
void CrossOnSample(ChartControl *chart, int series, int32_t sample);
// The cross on point p of a trace; false, and nothing changes, while it is hidden.
bool CrossOnPoint(ChartControl *chart, int series, int32_t point);
}  // namespace fm
