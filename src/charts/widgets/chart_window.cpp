#include "charts/widgets/chart_window.h"

#include "core/language.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolBar>
#include <QVBoxLayout>

namespace fm {
QToolBar *ChartToolbar(QWidget *form, std::function<void()> save) {
    auto *bar = new QToolBar(form);
    bar->setIconSize(QSize(18, 18));
    bar->addAction(ToolbarImage(2), ResString(4142), form, std::move(save));
    bar->addAction(ToolbarImage(4), ResString(4143))->setEnabled(false);  // printing comes later
    bar->addAction(QIcon(MessageImage(0, 18)), ResString(4144), form, [form] {
        if (form->parentWidget()) form->parentWidget()->close();
    });
    return bar;
}

void LayOutChartWindow(QWidget *form, QWidget *chart, QToolBar *toolbar, QWidget *panel) {
    auto *right = new QVBoxLayout;
    right->addWidget(toolbar);
    right->addWidget(panel, 1);
    auto *lay = new QHBoxLayout(form);
    lay->setContentsMargins(2, 2, 2, 2);
    lay->addWidget(chart, 1);
    lay->addLayout(right);
}

TraceKey AddTraceKey(QGridLayout *grid, QWidget *panel, int k, QColor color) {
    TraceKey key{new QLabel(panel), Tagged<QLabel>(panel, "Field", 4015 + k),
                 Tagged<QCheckBox>(panel, "Hide", 4019)};
    key.line->setFixedSize(24, 3);
    key.line->setStyleSheet(QStringLiteral("background:%1").arg(color.name()));
    grid->addWidget(key.line, k, 0);
    grid->addWidget(key.name, k, 1);
    grid->addWidget(key.hide, k, 2);
    return key;
}
}  // namespace fm
