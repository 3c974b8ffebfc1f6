#include "charts/widgets/chart_window.h"

#include "charts/widgets/chart_control.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"
#include "core/fault.h"
#include "printing/widgets/print_chart.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace fm {
QToolBar *ChartToolbar(QWidget *form, std::function<void()> save, const char *kind) {
    auto *bar = new QToolBar(form);
    bar->setIconSize(QSize(18, 18));
    bar->addAction(ToolbarImage(2), ResString(4142), form, std::move(save));
    // A fault in printing ends at the toolbar, as any of its commands.
    bar->addAction(ToolbarImage(4), ResString(4143), form, [kind] {
        TrapVoid("tbrGraph_ButtonClick", [kind] { PrintChart(ChartPrintTitle(), QString::fromLatin1(kind)); });
    });
    bar->addAction(MessageIcon(0), ResString(4144), form, [form] {
        if (form->parentWidget()) form->parentWidget()->close();
    });
    return bar;
}

namespace {
// The toolbar and panel at the width their texts need in the language on show; a
// window too low for them scrolls them rather than pressing them together.
class SideScroll : public QScrollArea {
public:
    using QScrollArea::QScrollArea;
    QSize sizeHint() const override {
        const QSize inner = widget() ? widget()->sizeHint() : QSize();
        return {inner.width() + Extra(), inner.height() + 2 * frameWidth()};
    }
    QSize minimumSizeHint() const override {
        const QSize inner = widget() ? widget()->minimumSizeHint() : QSize();
        return {inner.width() + Extra(), std::min(inner.height(), 120)};
    }

private:
    int Extra() const { return 2 * frameWidth() + verticalScrollBar()->sizeHint().width(); }
};
}  // namespace

void LayOutChartWindow(QWidget *form, QWidget *chart, QToolBar *toolbar, QWidget *panel) {
    auto *side = new QWidget;
    side->setObjectName(QStringLiteral("side"));
    auto *right = new QVBoxLayout(side);
    right->setContentsMargins(0, 0, 0, 0);
    right->addWidget(toolbar);
    right->addWidget(panel, 1);
    auto *scroll = new SideScroll(form);
    scroll->setObjectName(QStringLiteral("sideScroll"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setWidget(side);
    scroll->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    auto *lay = new QHBoxLayout(form);
    lay->setContentsMargins(2, 2, 2, 2);
    lay->addWidget(chart, 1);
    lay->addWidget(scroll);
}

TraceKey AddTraceKey(QGridLayout *grid, QWidget *panel, int k, QColor color, int tag, const char *caption) {
    TraceKey key{new QLabel(panel), Tagged<QLabel>(panel, caption, tag ? tag : 4015 + k),
                 Tagged<QCheckBox>(panel, "Hide", 4019)};
    key.line->setFixedSize(24, 3);
    key.line->setStyleSheet(QStringLiteral("background:%1").arg(color.name()));
    grid->addWidget(key.line, k, 0);
    grid->addWidget(key.name, k, 1);
    grid->addWidget(key.hide, k, 2);
    return key;
}

std::function<QString(int)> SampleDateLabels() {
    const MeasurementData &d = Data();
    return [start = d.DataStart, step = d.DataStep, unit = d.DataStepUnit](int point) {
        // Built from the two parts: a short date may hold blanks of its own.
        const double date = DateAdd(unit, double(point) * step, start);
        return date == std::floor(date) ? ShortDate(date) : ShortDate(date) + QLatin1Char('\n') + LongTime(date);
    };
}

int32_t DrawableSamples(size_t held) {
    const int32_t n = Data().DataCount;
    return held == 0 ? 0 : int32_t(std::clamp<int64_t>(n, 0, int64_t(held) - 1));
}

void CrossOnSample(ChartControl *chart, int series, int32_t sample) {
    if (sample < 1 || sample > chart->Count(series)) {
        chart->HideCross();
        return;
    }
    CrossOnPoint(chart, series, sample - 1);
}

bool CrossOnPoint(ChartControl *chart, int series, int32_t point) {
    if (!chart->Active(series)) return false;
    chart->ShowCross(series, point);
    return true;
}
}  // namespace fm
