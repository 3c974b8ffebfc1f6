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
    return w;
}

QString ViewCaption(int tag) {
    QString caption = ResString(tag);
    if (!Data().DataFile.isEmpty()) caption += QStringLiteral(" [") + Data().DataFile + QLatin1Char(']');
    return caption;
}
}  // namespace fm
