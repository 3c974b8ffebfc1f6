#include "core/widgets/frm_splash.h"

#include "core/widgets/logo.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace fm {

frmSplash::frmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("frmSplash"));
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::white);
    setPalette(p);
    Shape1 = new QFrame(this);
    Shape1->setObjectName(QStringLiteral("Shape1"));
    Shape1->setFrameShape(QFrame::Box);
    // Only the outline: the labels inside are frames too.
    Shape1->setStyleSheet(QStringLiteral("QFrame#Shape1{border:2px solid #1f4f8f;}"));
    imgLogo = new Logo(80, this);
    pctRight = new QLabel(QStringLiteral("QL540 magnetic field logger"), this);
    pctRight->setAlignment(Qt::AlignCenter);
    lblVersion = new QLabel(this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblVersion->setAlignment(Qt::AlignCenter);
    lblDescription = new QLabel(QStringLiteral("Data logger software"), this);
    lblMessages = new QLabel(this);
    lblMessages->setObjectName(QStringLiteral("lblMessages"));
    lblMessages->setAlignment(Qt::AlignCenter);
    auto *lay = new QVBoxLayout(Shape1);
    lay->addWidget(imgLogo);
    lay->addWidget(pctRight);
    lay->addWidget(lblVersion);
    lay->addWidget(lblDescription);
    lay->addStretch();
    lay->addWidget(lblMessages);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(Shape1);
    resize(420, 260);
    if (QScreen *s = QGuiApplication::primaryScreen()) move(s->geometry().center() - rect().center());
}

void frmSplash::Message(const QString &text) {
    lblMessages->setText(text);
    lblMessages->repaint();
}
} // namespace fm
