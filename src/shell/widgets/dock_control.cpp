#include "shell/widgets/dock_control.h"

#include <QDockWidget>
#include <QMainWindow>

namespace fm {

void DockControl::DockAdd(QWidget *form, int, int) {
    auto *dock = new QDockWidget(form->windowTitle(), owner_);
    dock->setObjectName(form->objectName() + QStringLiteral("Dock"));
    dock->setWidget(form);
    dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    owner_->addDockWidget(Qt::LeftDockWidgetArea, dock);
    QObject::connect(form, &QWidget::windowTitleChanged, dock, &QDockWidget::setWindowTitle);
    dock->hide();
    docks_.insert(form->objectName(), dock);
}

int DockControl::DockState(const QString &key) const {
    const QDockWidget *d = docks_.value(key);
    if (!d || d->isHidden()) return 0;
    return d->isFloating() ? 2 : 1;
}

void DockControl::DockSetState(const QString &key, int state) {
    QDockWidget *d = docks_.value(key);
    if (!d) return;
    if (state == 0) {
        d->hide();
        return;
    }
    d->setFloating(state != 1);
    d->show();
}

void DockControl::DockShow(const QString &key) { DockSetState(key, 2); }
void DockControl::DockHide(const QString &key) { DockSetState(key, 0); }

} // namespace fm
