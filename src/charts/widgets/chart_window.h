#pragma once
// What the chart windows share: the toolbar (save, print, close), the chart beside its
// panel, and a row of the trace keys.
#include <QColor>
#include <functional>

class QCheckBox;
class QGridLayout;
class QLabel;
class QToolBar;
class QWidget;

namespace fm {
// Save calls `save`; print waits for printing; close closes the form's window.
QToolBar *ChartToolbar(QWidget *form, std::function<void()> save);
// The chart takes the room; the toolbar and the panel stand on its right.
void LayOutChartWindow(QWidget *form, QWidget *chart, QToolBar *toolbar, QWidget *panel);

struct TraceKey {
    QLabel *line, *name;
    QCheckBox *hide;
};
// Row k of the panel's grid: the trace's colour, its name (text 4015 + k) and "Hide".
TraceKey AddTraceKey(QGridLayout *grid, QWidget *panel, int k, QColor color);
}  // namespace fm
