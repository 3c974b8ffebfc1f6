#include "shell/widgets/frm_wait.h"

#include "core/widgets/set_up_form.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace fm {

frmWait::frmWait(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmWait"));
    setWindowTitle(QStringLiteral("Wait downloading"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    SetTag(this, 37);
    lblProgress = new QLabel(this);
    lblProgress->setObjectName(QStringLiteral("lblProgress"));
    SetTag(lblProgress, 38);
    pctProgress = new QFrame(this);
    pctProgress->setObjectName(QStringLiteral("pctProgress"));
    pctProgress->setFrameShape(QFrame::Box);
    pctProgress->setFixedHeight(22);
    shpProgress = new QFrame(pctProgress);
    shpProgress->setObjectName(QStringLiteral("shpProgress"));
    shpProgress->setStyleSheet(QStringLiteral("background:#1f6fd0"));
    shpProgress->setGeometry(1, 1, 0, 20);
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(lblProgress);
    lay->addWidget(pctProgress);
    resize(360, 100);
    SetUpForm(this);
}

void frmWait::SetText(const QString &text) {
    lblProgress->setText(text);
    lblProgress->repaint();
}

void frmWait::Animate(int step) {
    const int width = pctProgress->width() / 5;
    QRect r = shpProgress->geometry();
    r.setWidth(width);
    r.setHeight(pctProgress->height() - 2);
    r.moveLeft(r.left() + step * direction_);
    shpProgress->setGeometry(r);
    if (r.right() >= pctProgress->width() - 1 || r.left() <= 0) direction_ = -direction_;
    pctProgress->repaint();
}

void frmWait::Finish() {
    closing_ = true;
    close();
}

void frmWait::closeEvent(QCloseEvent *e) {
    if (!closing_) e->ignore();
}

void frmWait::keyPressEvent(QKeyEvent *e) {
    if (e->key() != Qt::Key_Escape) QDialog::keyPressEvent(e);
}

} // namespace fm
