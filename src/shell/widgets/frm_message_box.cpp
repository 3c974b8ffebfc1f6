#include "shell/widgets/frm_message_box.h"

#include "core/fault.h"
#include "core/language.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace fm {
namespace {
constexpr int kMargin = 12, kButtonW = 96, kButtonH = 28, kIcon = 32;

QWidget *Owner() {
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmMain") && w->isVisible()) return w;
    return QApplication::activeWindow();
}
} // namespace

frmMessageBox::frmMessageBox(QWidget *owner) : QDialog(owner) {
    setObjectName(QStringLiteral("frmMessageBox"));
    DialogFrame(this);
    lblMessage = new QLabel(this);
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setWordWrap(true);
    lblMessage->setAlignment(Qt::AlignCenter);
    lblMessage->setTextInteractionFlags(Qt::TextSelectableByMouse);
    imgIcona = new QLabel(this);
    imgIcona->setObjectName(QStringLiteral("imgIcona"));
    btnOK = new QPushButton(this);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setDefault(true);
    btnCancel = new QPushButton(this);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    connect(btnOK, &QPushButton::clicked, this, [this] {
        Answer = true;
        accept();
    });
    connect(btnCancel, &QPushButton::clicked, this, [this] {
        Answer = false;
        reject();
    });
}

void frmMessageBox::resizeEvent(QResizeEvent *) { Place(); }

// The text and the icon stand centred in the gap between the top and the buttons.
void frmMessageBox::Place() {
    const int buttonsTop = height() - kMargin - kButtonH;
    const int gap = buttonsTop - kMargin;
    imgIcona->setGeometry(kMargin, kMargin + (gap - kIcon) / 2, kIcon, kIcon);
    const int textLeft = 2 * kMargin + kIcon;
    lblMessage->setGeometry(textLeft, kMargin + 10, width() - textLeft - kMargin, gap - 20);
    if (btnCancel->isHidden()) {
        btnOK->setGeometry((width() - kButtonW) / 2, buttonsTop, kButtonW, kButtonH);
    } else {
        const int left = (width() - 2 * kButtonW - kMargin) / 2;
        btnOK->setGeometry(left, buttonsTop, kButtonW, kButtonH);
        btnCancel->setGeometry(left + kButtonW + kMargin, buttonsTop, kButtonW, kButtonH);
    }
}

bool MessBox(const QString &text, const QString &title, int icon, int mode) {
    return Trap("MessBox", false, [&] {
        if (icon == -1) icon = 0;
        if (mode == -1) mode = 1;
        icon = qBound(0, icon, 2);
        frmMessageBox box(Owner());
        box.setWindowTitle(title.isEmpty() ? ResString(2 + icon) : title);
        box.imgIcona->setPixmap(MessageImage(icon, kIcon));
        box.btnOK->setText(ResString(mode == 0 ? 4003 : 4001));
        box.btnCancel->setText(ResString(mode == 0 ? 4004 : 4002));
        box.btnCancel->setVisible(mode != 1);
        box.lblMessage->setText(text);
        // Wide enough for the text, within reason; tall enough for its lines.
        const QFontMetrics fm(box.lblMessage->font());
        const int textW = qBound(220, fm.horizontalAdvance(text) + 40, 520);
        const QRect r = fm.boundingRect(QRect(0, 0, textW, 2000), Qt::TextWordWrap | Qt::AlignCenter, text);
        box.resize(textW + 3 * kMargin + kIcon + kMargin, qMax(130, r.height() + 2 * kMargin + kButtonH + 44));
        box.setFixedSize(box.size());
        box.Answer = false;
        box.exec();
        return box.Answer;
    });
}

bool SystemMessageBox(const QString &text, const QString &title, SystemBoxKind kind, QWidget *owner) {
    QMessageBox box(kind == SystemBoxKind::PlainOk ? QMessageBox::NoIcon : QMessageBox::Critical, title, text,
                    QMessageBox::Ok, owner);
    if (kind == SystemBoxKind::CriticalYesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
    }
    box.setWindowModality(Qt::ApplicationModal);
    return box.exec() == QMessageBox::Yes;
}

} // namespace fm
