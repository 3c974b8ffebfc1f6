#include "monitor/widgets/frm_id_code.h"

#include "core/data_set.h"
#include "core/host.h"
#include "core/language.h"
#include "core/widgets/set_up_form.h"
#include "link/operations.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace fm {

frmIDCode::frmIDCode(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmIDCode"));
    DialogFrame(this);
    setWindowTitle(QStringLiteral("Impostazione ID"));
    SetTag(this, 4021);
    fmeIDSet = new QGroupBox(QStringLiteral("Codice Identificativo QL540"), this);
    SetTag(fmeIDSet, 4022);
    lblIDShort = new QLabel(fmeIDSet);
    SetTag(lblIDShort, 4025);
    lblIDLong = new QLabel(fmeIDSet);
    SetTag(lblIDLong, 4026);
    txtIDShort = new QLineEdit(fmeIDSet);
    txtIDShort->setObjectName(QStringLiteral("txtIDShort"));
    txtIDLong = new QLineEdit(fmeIDSet);
    txtIDLong->setObjectName(QStringLiteral("txtIDLong"));
    txtIDLong->setMinimumWidth(380);
    for (QLineEdit *e : {txtIDShort, txtIDLong}) e->installEventFilter(this);
    btnReadID = new QPushButton(QStringLiteral("Read"), this);
    SetTag(btnReadID, 4024);
    btnWriteID = new QPushButton(QStringLiteral("Write"), this);
    SetTag(btnWriteID, 4023);
    btnCancel = new QPushButton(QStringLiteral("Cancel"), this);
    SetTag(btnCancel, 4057);
    auto *g = new QGridLayout(fmeIDSet);
    g->addWidget(lblIDShort, 0, 0);
    g->addWidget(txtIDShort, 0, 1);
    g->addWidget(lblIDLong, 1, 0);
    g->addWidget(txtIDLong, 1, 1);
    auto *lay = new QGridLayout(this);
    lay->addWidget(fmeIDSet, 0, 0, 1, 3);
    lay->addWidget(btnReadID, 1, 0);
    lay->addWidget(btnWriteID, 1, 1);
    lay->addWidget(btnCancel, 1, 2);
    SetUpForm(this);
    connect(btnReadID, &QPushButton::clicked, this, &frmIDCode::Load);
    connect(btnWriteID, &QPushButton::clicked, this, &frmIDCode::btnWriteID_Click);
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmIDCode::Load() {
    if (!ReadID()) return;
    txtIDShort->setText(Data().ShortID.trimmed());
    txtIDLong->setText(Data().LongID.trimmed());
}

void frmIDCode::btnWriteID_Click() {
    if (txtIDShort->text().size() > 16) {
        Host().MessBox(ResString(28) + QStringLiteral("(Max 16)"), {}, -1, -1);
        return;
    }
    if (txtIDLong->text().size() > 48) {
        Host().MessBox(ResString(28) + QStringLiteral("(Max 48)"), {}, -1, -1);
        return;
    }
    Data().SetShortID(txtIDShort->text());
    Data().SetLongID(txtIDLong->text());
    WriteID();
    Host().UpdateInfo();
}

// Line feeds, returns and double quotes cannot be typed into a code.
bool frmIDCode::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        const QString t = static_cast<QKeyEvent *>(event)->text();
        if (t == QStringLiteral("\n") || t == QStringLiteral("\r") || t == QStringLiteral("\"")) return true;
    }
    return QDialog::eventFilter(watched, event);
}
} // namespace fm
