#include "shell/widgets/frm_warnings.h"

#include "analysis/warnings.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace fm {

frmWarnings::frmWarnings(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmWarnings"));
    SetTag(this, 4089);
    trwWarning = new QTreeWidget(this);
    trwWarning->setObjectName(QStringLiteral("trwWarning"));
    trwWarning->setHeaderHidden(true);
    trwWarning->setRootIsDecorated(false);
    trwWarning->setIconSize(QSize(16, 16));
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->addWidget(trwWarning);
    resize(460, 220);
    SetUpForm(this);
}

void frmWarnings::AddString(const QString &text, int level) {
    auto *item = new QTreeWidgetItem(trwWarning, QStringList{text});
    // Level 2 is information, 3 something to look at.
    item->setIcon(0, MessageIcon(level >= 3 ? 1 : 2));
}

void frmWarnings::Refresh() {
    trwWarning->clear();
    for (const WarningLine &l : Warnings()) AddString(l.text, l.level);
}

void frmWarnings::CloseByCode() {
    byCode_ = true;
    close();
    byCode_ = false;
}

void frmWarnings::closeEvent(QCloseEvent *e) {
    if (byCode_) {
        e->accept();
        return;
    }
    e->ignore();
    if (parentWidget()) parentWidget()->hide();  // the sub-window that holds it
    hide();
    emit hiddenByUser();
}
} // namespace fm
