#include "shell/widgets/frm_wait.h"

#include "core/host.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/widgets/set_up_form.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
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
    lblShare = new QLabel(this);
    lblShare->setObjectName(QStringLiteral("lblShare"));
    prgShare = new QProgressBar(this);
    prgShare->setObjectName(QStringLiteral("prgShare"));
    prgShare->setRange(0, 100);
    prgShare->setTextVisible(false);
    prgShare->setFixedHeight(10);
    lblShare->hide();
    prgShare->hide();
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(lblProgress);
    lay->addWidget(pctProgress);
    lay->addWidget(lblShare);
    lay->addWidget(prgShare);
    resize(360, 130);
    SetUpForm(this);
}

void frmWait::SetText(const QString &text) {
    lblProgress->setText(text);
    lblProgress->repaint();
}

void frmWait::SetShare(int received, int total) {
    const int percent = SharePercent(received, total);
    if (percent < 0) return;
    lblShare->setText(ResString(3052) + FormatNumber(double(percent), u"0") + QStringLiteral(" %"));
    prgShare->setValue(percent);
    lblShare->show();
    prgShare->show();
    lblShare->repaint();
    prgShare->repaint();
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
