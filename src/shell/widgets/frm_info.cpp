#include "shell/widgets/frm_info.h"

#include "core/widgets/colors.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"
#include "shell/info_model.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace fm {
namespace {

QLabel *Caption(QWidget *parent, const char *text, int tag) {
    auto *l = new QLabel(QString::fromUtf8(text), parent);
    SetTag(l, tag);
    return l;
}

QLabel *Value(QWidget *parent, const char *name) {
    auto *l = new QLabel(QStringLiteral("---"), parent);
    l->setObjectName(QLatin1String(name));
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    return l;
}
}  // namespace

frmInfo::frmInfo(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmInfo"));
    setWindowTitle(QStringLiteral("Info"));
    SetTag(this, 4027);
    fmeData = new QGroupBox(QStringLiteral("Data Informations"), this);
    SetTag(fmeData, 4028);
    auto *g = new QGridLayout(fmeData);
    g->setVerticalSpacing(3);
    int row = 0;
    auto add = [&](QLabel *cap, QLabel *val) {
        g->addWidget(cap, row, 0, Qt::AlignTop);
        g->addWidget(val, row++, 1);
    };
    add(Caption(fmeData, "Source", 4030), lblDataSource = Value(fmeData, "lblDataSource"));
    add(Caption(fmeData, "Campioni", 4031), lblNumData = Value(fmeData, "lblNumData"));
    add(Caption(fmeData, "Step", 4032), lblStep1 = Value(fmeData, "lblStep1"));
    add(Caption(fmeData, "StartDate", 4033), lblStartDate1 = Value(fmeData, "lblStartDate1"));
    add(Caption(fmeData, "Stop Date", 4034), lblStopDate1 = Value(fmeData, "lblStopDate1"));
    add(Caption(fmeData, "Valore Minimo", 3044), lblValue[0] = Value(fmeData, "lblValue0"));
    add(Caption(fmeData, "Valore Max", 3045), lblValue[1] = Value(fmeData, "lblValue1"));
    add(Caption(fmeData, "Average", 3046), lblValue[2] = Value(fmeData, "lblValue2"));
    add(Caption(fmeData, "Mediana", 3051), lblValue[3] = Value(fmeData, "lblValue3"));
    add(Caption(fmeData, "Short ID", 4025), lblShortID1 = Value(fmeData, "lblShortID1"));
    add(Caption(fmeData, "Long ID", 4026), lblLongID1 = Value(fmeData, "lblLongID1"));
    lblLongID1->setWordWrap(true);
    auto *icons = new QHBoxLayout;
    imgDataPresent = new QLabel(fmeData);
    imgSaved = new QLabel(fmeData);
    icons->addWidget(imgDataPresent);
    icons->addWidget(imgSaved);
    icons->addStretch();
    g->addLayout(icons, row, 0, 1, 2);
    g->setColumnStretch(1, 1);

    fmeMonitor = new QGroupBox(QStringLiteral("Monitor Informations"), this);
    SetTag(fmeMonitor, 4029);
    auto *m = new QGridLayout(fmeMonitor);
    m->addWidget(Caption(fmeMonitor, "Comm Status", 4035), 0, 0);
    m->addWidget(lblCommStatus = Value(fmeMonitor, "lblCommStatus"), 0, 1);
    m->addWidget(Caption(fmeMonitor, "Status", 4036), 1, 0);
    m->addWidget(lblMonitorStatus = Value(fmeMonitor, "lblMonitorStatus"), 1, 1);
    lblMonitorStatus->setAutoFillBackground(true);
    lblMonitorStatus->setMargin(2);
    m->setColumnStretch(1, 1);
    m->setRowStretch(2, 1);

    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(4, 4, 4, 4);
    lay->addWidget(fmeData);
    lay->addWidget(fmeMonitor, 1);
    setMinimumWidth(290);
    SetUpForm(this);
}

void frmInfo::Refresh() {
    Show(BuildInfo());
}

void frmInfo::Show(const InfoTexts &t) {
    lblShortID1->setText(t.shortId);
    lblLongID1->setText(t.longId);
    lblStep1->setText(t.step);
    lblDataSource->setText(t.source);
    lblNumData->setText(t.count);
    lblStartDate1->setText(t.start);
    lblStopDate1->setText(t.stop);
    // Live figures have no median, and leave the pictures of the data set alone.
    for (int i = 0; i < (t.live ? 3 : 4); ++i) lblValue[size_t(i)]->setText(t.values[size_t(i)]);
    if (!t.live) {
        imgDataPresent->setPixmap(InfoImage(t.dataPresent ? "data_full" : "data_empty"));
        imgSaved->setPixmap(InfoImage(t.dataPresent && t.saved ? "saved" : "not_saved"));
    }
    lblMonitorStatus->setText(t.monitorText);
    QPalette p = lblMonitorStatus->palette();
    p.setColor(QPalette::Window, FromBgr(t.monitorBack));
    lblMonitorStatus->setPalette(p);
    lblCommStatus->setText(t.commText);
    QPalette c = lblCommStatus->palette();
    c.setColor(QPalette::WindowText, FromBgr(t.commColor));
    lblCommStatus->setPalette(c);
}
}  // namespace fm
