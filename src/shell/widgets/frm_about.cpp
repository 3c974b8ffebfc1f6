#include "shell/widgets/frm_about.h"

#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/logo.h"
#include "core/widgets/set_up_form.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace fm {
namespace {
const QString kSequence = QStringLiteral("opensky");

bool RealShiftCtrl() {
    const auto m = QGuiApplication::queryKeyboardModifiers();
    return (m & Qt::ShiftModifier) && (m & Qt::ControlModifier);
}
} // namespace

bool (*frmAbout::ShiftCtrlDown)() = RealShiftCtrl;

frmAbout::frmAbout(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    DialogFrame(this);
    setWindowTitle(QStringLiteral("About Fluxmere..."));
    pctLogo = new Logo(64, this);
    pctRight = new QLabel(this);
    lblVersion = new QLabel(this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblEEprom = new QLabel(this);
    lblEEprom->setObjectName(QStringLiteral("lblEEprom"));
    lblComeTo = new QLabel(QStringLiteral("Warning:"), this);
    SetTag(lblComeTo, 32);
    lblDescription = new QLabel(this);
    lblDescription->setWordWrap(true);
    SetTag(lblDescription, 33);
    Label1 = new QLabel(QStringLiteral("https://fluxmere.example"), this);
    btnOK = new QPushButton(QStringLiteral("OK"), this);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setFocusPolicy(Qt::NoFocus);  // keys go to the window's own handler
    auto *lay = new QVBoxLayout(this);
    for (QWidget *w : {static_cast<QWidget *>(pctLogo), static_cast<QWidget *>(lblVersion),
                       static_cast<QWidget *>(lblEEprom), static_cast<QWidget *>(lblComeTo),
                       static_cast<QWidget *>(lblDescription), static_cast<QWidget *>(Label1)})
        lay->addWidget(w);
    lay->addWidget(btnOK, 0, Qt::AlignRight);
    SetUpForm(this);
    lblVersion->setText(QStringLiteral("QL540 ") + ResString(4079) + QStringLiteral(" : ") +
                        QStringLiteral("%1.%2.%3").arg(FLUXMERE_VERSION_MAJOR).arg(FLUXMERE_VERSION_MINOR)
                            .arg(FLUXMERE_VERSION_REVISION));
    lblEEprom->setText(ResString(4088) + QStringLiteral(" : ") + Str(double(Options().MemorySize) * 8 / 1024) +
                       QStringLiteral(" Kbit"));
    KeyCount = 0;
    connect(btnOK, &QPushButton::clicked, this, [this] {
        if (KeyCount == kSequence.size() && ShiftCtrlDown()) {
            frmHidden credits(this);
            credits.exec();
        }
        accept();
    });
}

void frmAbout::keyPressEvent(QKeyEvent *e) {
    const QString t = e->text();
    if (!t.isEmpty() && KeyCount < kSequence.size() && t.at(0) == kSequence.at(KeyCount)) ++KeyCount;
    else if (!t.isEmpty()) KeyCount = 0;
    QDialog::keyPressEvent(e);
}

frmHidden::frmHidden(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmHidden"));
    setWindowTitle(QStringLiteral("Special thanks......."));
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(new Logo(56, this));
    lay->addWidget(new QLabel(QStringLiteral("This software was realized by:"), this));
    auto *names = new QLabel(QStringLiteral("The Fluxmere developers"), this);
    QFont f = names->font();
    f.setBold(true);
    names->setFont(f);
    lay->addWidget(names);
    auto *back = new QPushButton(QStringLiteral("Back to Work!!"), this);
    lay->addWidget(back);
    connect(back, &QPushButton::clicked, this, &QDialog::accept);
}

} // namespace fm
