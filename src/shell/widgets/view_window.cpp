#include "shell/widgets/view_window.h"

#include "core/data_set.h"
#include "core/language.h"
#include "core/widgets/icons.h"
#include "shell/widgets/frm_main.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace fm {
QMdiSubWindow *AddView(QWidget *form, int icon, QSize size) {
    frmMain *m = MainForm();
    QMdiSubWindow *w = m->mdiArea->addSubWindow(form);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowIcon(ToolbarImage(icon));
    w->resize(size);
    w->show();
    // A window never narrower than its controls: arranged or made small, it grows instead.
    w->setMinimumSize(w->minimumSizeHint());
    // The area placed the window for the size it had before: larger now, it may reach
    // past the edges of what shows.
    KeepInside(w);
    return w;
}

void KeepInside(QMdiSubWindow *w) {
    const QWidget *area = w->parentWidget();
    if (!area || w->isMaximized() || w->isMinimized()) return;
    QRect g = w->geometry();
    g.setSize(g.size().boundedTo(area->size()).expandedTo(w->minimumSize()));
    if (g.right() > area->width() - 1) g.moveRight(area->width() - 1);
    if (g.bottom() > area->height() - 1) g.moveBottom(area->height() - 1);
    if (g.left() < 0) g.moveLeft(0);
    if (g.top() < 0) g.moveTop(0);
    if (g != w->geometry()) w->setGeometry(g);
}

QString ViewCaption(int tag) {
    QString caption = ResString(tag);
    if (!Data().DataFile.isEmpty()) caption += QStringLiteral(" [") + Data().DataFile + QLatin1Char(']');
    return caption;
}
}  // namespace fm
