#include "shell/widgets/frm_date.h"

#include "core/regional.h"
#include "core/widgets/set_up_form.h"

#include <QCalendarWidget>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimeEdit>

namespace fm {

frmDate::frmDate(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmDate"));
    DialogFrame(this);
    Label1 = new QLabel(this);
    SetTag(Label1, 39);
    lblDateText = new QLabel(this);
    SetTag(lblDateText, 4050);
    lblTimeText = new QLabel(this);
    SetTag(lblTimeText, 4051);
    lblDate = new QLabel(this);
    lblDate->setObjectName(QStringLiteral("lblDate"));
    lblDate->setFrameShape(QFrame::StyledPanel);
    btnDate = new QPushButton(QStringLiteral("..."), this);
    btnDate->setObjectName(QStringLiteral("btnDate"));
    monDate = new QCalendarWidget(this);
    monDate->setObjectName(QStringLiteral("monDate"));
    monDate->hide();
    dtpTime = new QTimeEdit(this);
    dtpTime->setObjectName(QStringLiteral("dtpTime"));
    dtpTime->setDisplayFormat(QStringLiteral("HH:mm"));
    btnOk = new QPushButton(QStringLiteral("OK"), this);
    btnOk->setObjectName(QStringLiteral("btnOk"));
    btnAnnulla = new QPushButton(QStringLiteral("Annulla"), this);
    btnAnnulla->setObjectName(QStringLiteral("btnAnnulla"));
    auto *g = new QGridLayout(this);
    g->addWidget(Label1, 0, 0, 1, 3);
    g->addWidget(lblDateText, 1, 0);
    g->addWidget(lblDate, 1, 1);
    g->addWidget(btnDate, 1, 2);
    g->addWidget(monDate, 2, 0, 1, 3);
    g->addWidget(lblTimeText, 3, 0);
    g->addWidget(dtpTime, 3, 1);
    g->addWidget(btnOk, 4, 1);
    g->addWidget(btnAnnulla, 4, 2);
    SetUpForm(this);
    const double now = Now();
    lblDate->setText(ShortDate(now));
    dtpTime->setTime(DateToDateTime(now).time());
    Result = DateFromParts(2001, 1, 1);

    connect(btnDate, &QPushButton::clicked, this, [this] {
        if (monDate->isVisible()) {
            monDate->hide();
            return;
        }
        double d = 0;
        if (ParseDate(lblDate->text(), &d)) monDate->setSelectedDate(DateToDateTime(d).date());
        monDate->show();
        monDate->setFocus();
    });
    connect(monDate, &QCalendarWidget::clicked, this, [this](QDate date) {
        lblDate->setText(ShortDate(DateFromParts(date.year(), date.month(), date.day())));
        monDate->hide();
    });
    connect(btnOk, &QPushButton::clicked, this, [this] {
        double d = 0;
        const QString text = lblDate->text() + QLatin1Char(' ') + dtpTime->time().toString(QStringLiteral("HH:mm:ss"));
        Result = ParseDate(text, &d) ? d : DateFromParts(2001, 1, 1);
        accept();
    });
    connect(btnAnnulla, &QPushButton::clicked, this, [this] {
        Result = DateFromParts(2001, 1, 1);
        reject();
    });
}

double AskStartDate(QWidget *parent) {
    frmDate dlg(parent);
    dlg.exec();
    return dlg.Result;
}

} // namespace fm
