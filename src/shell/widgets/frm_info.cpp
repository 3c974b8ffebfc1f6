#include "shell/widgets/frm_info.h"

#include "core/widgets/colors.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"
#include "shell/info_model.h"

#include "core/language.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

namespace fm {
namespace {

// A value never widens the panel: what does not fit ends in "…", and the whole text is
// in the tooltip. (A label that grows with its text pushed the panel, and with it the
// child windows' close buttons, off the screen when the link came up.)
class ElidedLabel : public QLabel {
public:
    using QLabel::QLabel;
    QSize minimumSizeHint() const override {
        return {fontMetrics().horizontalAdvance(QStringLiteral("…")) + 2 * margin(),
                QLabel::minimumSizeHint().height()};
    }
    QSize sizeHint() const override { return minimumSizeHint().expandedTo({80, 0}); }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter p(this);
        const QRect r = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, r.width());
        setToolTip(shown == text() ? QString() : text());
        style()->drawItemText(&p, r, int(alignment()), palette(), isEnabled(), shown, foregroundRole());
    }
};

QLabel *Caption(QWidget *parent, const char *text, int tag) {
    auto *l = new QLabel(QString::fromUtf8(text), parent);
    SetTag(l, tag);
    return l;
}

// `wrap`: the text breaks into lines instead.
QLabel *Value(QWidget *parent, const char *name, bool wrap = false) {
    auto *l =
        wrap ? new QLabel(QStringLiteral("---"), parent) : new ElidedLabel(QStringLiteral("---"), parent);
    l->setWordWrap(wrap);
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
    add(Caption(fmeData, "Long ID", 4026), lblLongID1 = Value(fmeData, "lblLongID1", true));
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
    // The states of the link and of the session are short and known: the panel is as wide
    // as the longest from the start, so none of them is ever cut.
    for (QLabel *l : {lblCommStatus, lblMonitorStatus}) {
        int widest = 0;
        for (int n : {5, 3010, 3011, 3022, 3023})
            widest = qMax(widest, l->fontMetrics().horizontalAdvance(ResString(n)));
        l->setMinimumWidth(widest + 2 * l->margin() + 2);
    }
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
