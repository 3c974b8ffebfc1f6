#include "monitor/widgets/frm_monitor.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/colors.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"
#include "link/link_state.h"
#include "link/status_decoding.h"
#include "link/transaction.h"
#include "monitor/session_plan.h"
#include "shell/info_model.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QThread>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTimeEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace fm {
namespace {

void Paint(QLabel *l, uint32_t back) {
    l->setAutoFillBackground(true);
    QPalette p = l->palette();
    p.setColor(QPalette::Window, FromBgr(back));
    l->setPalette(p);
}

} // namespace

frmMonitor::frmMonitor(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmMonitor"));
    DialogFrame(this);
    setWindowTitle(QStringLiteral("Form1"));
    SetTag(this, 4038);
    pages = new QStackedWidget(this);
    fmeMonitor = Tagged<QGroupBox>(this, "Monitor Settings", 4039);
    auto *grid = new QGridLayout(fmeMonitor);
    const char *dateCaptions[2] = {"Data inizio Monitoraggio", "Data fine Monitoraggio"};
    for (int i = 0; i < 2; ++i) {
        fmeDate[size_t(i)] = Tagged<QGroupBox>(fmeMonitor, dateCaptions[i], 4040 + i);
        auto *g = new QGridLayout(fmeDate[size_t(i)]);
        if (i == 0) {
            optStartDate[0] = Tagged<QRadioButton>(fmeDate[0], "Immediatamente", 4047);
            optStartDate[1] = Tagged<QRadioButton>(fmeDate[0], "Alla data inserita", 4048);
        } else {
            optStopDate[0] = Tagged<QRadioButton>(fmeDate[1], "Fino ad esaurimento batteria", 4049);
            optStopDate[1] = Tagged<QRadioButton>(fmeDate[1], "Alla data inserita", 4048);
        }
        auto &opts = i == 0 ? optStartDate : optStopDate;
        g->addWidget(opts[0], 0, 0, 1, 3);
        g->addWidget(opts[1], 1, 0, 1, 3);
        lblDateText[size_t(i)] = Tagged<QLabel>(fmeDate[size_t(i)], "Label1", 4050);
        lblTimeText[size_t(i)] = Tagged<QLabel>(fmeDate[size_t(i)], "Label1", 4051);
        lblDate[size_t(i)] = new QLabel(fmeDate[size_t(i)]);
        lblDate[size_t(i)]->setFrameShape(QFrame::StyledPanel);
        lblDate[size_t(i)]->setObjectName(QStringLiteral("lblDate%1").arg(i));
        btnDate[size_t(i)] = new QPushButton(QStringLiteral("..."), fmeDate[size_t(i)]);
        btnDate[size_t(i)]->setMaximumWidth(32);
        dtpTime[size_t(i)] = new QTimeEdit(fmeDate[size_t(i)]);
        dtpTime[size_t(i)]->setDisplayFormat(QStringLiteral("HH:mm"));
        g->addWidget(lblDateText[size_t(i)], 2, 0);
        g->addWidget(lblDate[size_t(i)], 2, 1);
        g->addWidget(btnDate[size_t(i)], 2, 2);
        g->addWidget(lblTimeText[size_t(i)], 3, 0);
        g->addWidget(dtpTime[size_t(i)], 3, 1);
        grid->addWidget(fmeDate[size_t(i)], 0, i);
        connect(opts[0], &QRadioButton::toggled, this, [this, i](bool on) {
            SetStatus(i, !on);
            if (i == 1) AutoCalculateDate();
        });
        connect(btnDate[size_t(i)], &QPushButton::clicked, this, [this, i] {
            if (monDate->isVisible()) {
                monDate->hide();
                return;
            }
            double d = 0;
            if (ParseDate(lblDate[size_t(i)]->text(), &d)) monDate->setSelectedDate(DateToDateTime(d).date());
            CalendarIndex = i;
            ShowCalendarAt(btnDate[size_t(i)]);
        });
        connect(dtpTime[size_t(i)], &QTimeEdit::timeChanged, this, [this] { AutoCalculateDate(); });
    }
    fmeStep = Tagged<QGroupBox>(fmeMonitor, "Campiona ogni", 4042);
    auto *step = new QHBoxLayout(fmeStep);
    txtStepSize = new QLineEdit(QStringLiteral("10"), fmeStep);
    txtStepSize->setObjectName(QStringLiteral("txtStepSize"));
    txtStepSize->setMaximumWidth(60);
    updUp = new QToolButton(fmeStep);
    updUp->setArrowType(Qt::UpArrow);
    updDown = new QToolButton(fmeStep);
    updDown->setArrowType(Qt::DownArrow);
    cboStepResolution = new QComboBox(fmeStep);
    step->addWidget(txtStepSize);
    step->addWidget(updUp);
    step->addWidget(updDown);
    step->addWidget(cboStepResolution, 1);
    grid->addWidget(fmeStep, 1, 0);
    fmeStatus = Tagged<QGroupBox>(fmeMonitor, "Monitor Status", 4043);
    auto *status = new QVBoxLayout(fmeStatus);
    lblStatus = new QLabel(fmeStatus);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setAlignment(Qt::AlignCenter);
    lblStatus->setMinimumHeight(28);
    lblStatus->setMinimumWidth(240);
    status->addWidget(lblStatus);
    grid->addWidget(fmeStatus, 1, 1);
    auto *buttons = new QHBoxLayout;
    btnStartMonitor = Tagged<QPushButton>(fmeMonitor, "Start Monitor", 4044);
    btnStopMonitor = Tagged<QPushButton>(fmeMonitor, "Stop Monitor", 4045);
    btnReadSettings = Tagged<QPushButton>(fmeMonitor, "Read Settings", 4046);
    btnCancel = Tagged<QPushButton>(fmeMonitor, "Cancel", 4057);
    for (QPushButton *b : {btnStartMonitor, btnStopMonitor, btnReadSettings, btnCancel}) buttons->addWidget(b);
    grid->addLayout(buttons, 2, 0, 1, 2);

    fmeProgress = new QWidget(this);
    auto *prog = new QGridLayout(fmeProgress);
    lblTitle = Tagged<QLabel>(fmeProgress, "Setting Monitor....", 4052);
    QFont big = lblTitle->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    lblTitle->setFont(big);
    prog->addWidget(lblTitle, 0, 0, 1, 2);
    for (int i = 0; i < 4; ++i) {
        imgStatus[size_t(i)] = new QLabel(fmeProgress);
        imgStatus[size_t(i)]->setFixedSize(20, 20);
        lblText[size_t(i)] = Tagged<QLabel>(fmeProgress, "Label1", 4053 + i);
        lblText[size_t(i)]->setMargin(3);
        prog->addWidget(imgStatus[size_t(i)], i + 1, 0);
        prog->addWidget(lblText[size_t(i)], i + 1, 1);
    }
    btnClose = Tagged<QPushButton>(fmeProgress, "Close", 4057);
    btnClose->setEnabled(false);
    prog->addWidget(btnClose, 5, 1, Qt::AlignRight);
    pages->addWidget(fmeMonitor);
    pages->addWidget(fmeProgress);
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(pages);
    // A popup of its own, so that the dialog's edges do not clip it; a click outside
    // closes it, and one on a date button closes it without opening it again.
    monDate = new QCalendarWidget(this);
    monDate->setObjectName(QStringLiteral("monDate"));
    monDate->setWindowFlags(Qt::Popup);
    monDate->setAttribute(Qt::WA_NoMouseReplay);
    monDate->hide();
    connect(monDate, &QCalendarWidget::clicked, this, [this](QDate date) {
        lblDate[size_t(CalendarIndex)]->setText(ShortDate(DateFromParts(date.year(), date.month(), date.day())));
        monDate->hide();
        AutoCalculateDate();
    });

    SetUpForm(this);
    for (int code = 2; code <= 5; ++code) {
        static const int names[] = {0, 0, 3013, 3012, 3014, 3015};
        cboStepResolution->addItem(ResString(names[code]), code);
    }
    cboStepResolution->setCurrentIndex(-1);
    connect(cboStepResolution, &QComboBox::activated, this, [this] { UnitChanged(); });
    connect(txtStepSize, &QLineEdit::editingFinished, this, [this] { StepRules(); });
    const auto bump = [this](int sign) {
        const int v = qBound(0, txtStepSize->text().toInt() + sign * StepIncrement, 100);
        txtStepSize->setText(QString::number(v));
        StepRules();
    };
    connect(updUp, &QToolButton::clicked, this, [bump] { bump(1); });
    connect(updDown, &QToolButton::clicked, this, [bump] { bump(-1); });
    connect(btnStartMonitor, &QPushButton::clicked, this, &frmMonitor::btnStartMonitor_Click);
    connect(btnStopMonitor, &QPushButton::clicked, this, &frmMonitor::btnStopMonitor_Click);
    connect(btnReadSettings, &QPushButton::clicked, this, [this] {
        if (!Host().MessBox(ResString(34), {}, 2, 0)) return;
        const bool ok = SendCommand(10, true, false, kReplyTimeoutMs);
        ShowMonitorSettings(ok);
        if (ok) Host().UpdateInfo();
    });
    connect(btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(btnClose, &QPushButton::clicked, this, [this] { WaitFlag = false; });
}

void frmMonitor::ShowCalendarAt(QWidget *button) {
    monDate->resize(monDate->sizeHint());
    const QSize size = monDate->size();
    const QPoint below = button->mapToGlobal(QPoint(button->width() / 2 - size.width() / 2, button->height()));
    QScreen *screen = button->screen();
    const QRect room = screen ? screen->availableGeometry() : QRect(below, size);
    QPoint at = below;
    // Above the button when there is no room below it; always wholly on the screen.
    if (at.y() + size.height() > room.bottom() + 1) at.setY(button->mapToGlobal(QPoint(0, 0)).y() - size.height());
    at.setX(qBound(room.left(), at.x(), qMax(room.left(), room.right() + 1 - size.width())));
    at.setY(qBound(room.top(), at.y(), qMax(room.top(), room.bottom() + 1 - size.height())));
    monDate->move(at);
    monDate->show();
    // The window's frame is known only once it shows: pull that in as well.
    const QRect frame = monDate->frameGeometry();
    const int dx = qMax(0, room.left() - frame.left()) - qMax(0, frame.right() - room.right());
    const int dy = qMax(0, room.top() - frame.top()) - qMax(0, frame.bottom() - room.bottom());
    if (dx || dy) monDate->move(monDate->pos() + QPoint(dx, dy));
    monDate->setFocus();
}

void frmMonitor::Load() {
    FormReady = false;
    ShowMonitorSettings(SendCommand(10, true, false, kReplyTimeoutMs));
    FormReady = true;
}

QString frmMonitor::SelectedUnit() const {
    const int i = cboStepResolution->currentIndex();
    if (i < 0) return {};
    return Shared().UnitLetters[size_t(cboStepResolution->itemData(i).toInt())];
}

bool frmMonitor::GroupDate(int i, double *out) const {
    double day = 0;
    if (!ParseDate(lblDate[size_t(i)]->text(), &day)) return false;
    const QTime t = dtpTime[size_t(i)]->time();
    *out = std::floor(day) + (t.hour() * 3600 + t.minute() * 60) / 86400.0;
    return true;
}

void frmMonitor::ShowGroupDate(int i, double date) {
    lblDate[size_t(i)]->setText(ShortDate(date));
    dtpTime[size_t(i)]->blockSignals(true);
    dtpTime[size_t(i)]->setTime(DateToDateTime(date).time());
    dtpTime[size_t(i)]->blockSignals(false);
}

void frmMonitor::SetStatus(int index, bool enabled) {
    for (QWidget *w : {static_cast<QWidget *>(lblDateText[size_t(index)]), static_cast<QWidget *>(lblTimeText[size_t(index)]),
                       static_cast<QWidget *>(lblDate[size_t(index)]), static_cast<QWidget *>(btnDate[size_t(index)]),
                       static_cast<QWidget *>(dtpTime[size_t(index)])})
        w->setEnabled(enabled);
}

void frmMonitor::StepRules() {
    if (cboStepResolution->currentIndex() >= 0) {
        int v = int(Val(txtStepSize->text()));
        if (v < 0) v = 0;
        if (v > 255) v = 255;
        if (v < 10 && SelectedUnit() == QLatin1String("s")) v = 10;
        txtStepSize->setText(QString::number(v));
    }
    AutoCalculateDate();
}

void frmMonitor::UnitChanged() {
    if (cboStepResolution->currentIndex() < 0) return;
    UnitRules();
    AutoCalculateDate();
}

void frmMonitor::UnitRules() {
    const bool seconds = SelectedUnit() == QLatin1String("s");
    if (seconds && Val(txtStepSize->text()) < 10) txtStepSize->setText(QStringLiteral("10"));
    StepIncrement = seconds ? 10 : 1;
}

void frmMonitor::AutoCalculateDate() {
    double start = 0, end = 0, shown = 0;
    const QString unit = SelectedUnit();
    if (!GroupDate(0, &start) || unit.isEmpty()) return;
    try {
        end = MemoryEndDate(start, int32_t(Val(txtStepSize->text())), unit);
    } catch (const Fault &) {
        return;
    }
    if (optStopDate[1]->isChecked()) {
        if (GroupDate(1, &shown) && end < shown) {
            ShowGroupDate(1, end);
            if (Options().WarnOnDate && FormReady) Host().MessBox(ResString(36), {}, 2, 1);
        }
    } else if (optStopDate[0]->isChecked()) {
        ShowGroupDate(1, end);
    }
}

void frmMonitor::ShowMonitorSettings(bool valid) {
    const double now = Now();
    if (!valid) {
        lblStatus->setText(ResString(5));
        Paint(lblStatus, 0xE0E0E0);
        ShowGroupDate(0, now);
        txtStepSize->setText(QStringLiteral("10"));
        cboStepResolution->setCurrentIndex(1);  // minutes
        UnitRules();
        ShowGroupDate(1, MemoryEndDate(now, 10, QStringLiteral("n")));
        optStartDate[0]->setChecked(true);
        optStopDate[0]->setChecked(true);
        return;
    }
    const auto &m = Link().MonitorSettings;
    const SessionStatus st = DecodeStatus(m[16], m[18]);
    Shared().MonitorState = int16_t(st.monitorState);
    lblStatus->setText(st.text);
    Paint(lblStatus, st.backColour);
    btnStartMonitor->setEnabled(st.startEnabled);
    btnStopMonitor->setEnabled(st.stopEnabled);
    txtStepSize->setText(QString::number(FromBcd(uint8_t(m[6]))));
    cboStepResolution->setCurrentIndex(cboStepResolution->findData(int(m[5] & 7)));
    // The unit's rules as if the user had chosen it; the dates are shown below.
    if (cboStepResolution->currentIndex() >= 0) UnitRules();
    uint8_t wire[5];
    const int from = (m[7] & 1) ? 8 : 0;
    for (int i = 0; i < 5; ++i) wire[i] = uint8_t(m[size_t(from + i)]);
    (m[7] & 1 ? optStartDate[1] : optStartDate[0])->setChecked(true);
    const double start = DecodeWireDate(wire);
    ShowGroupDate(0, start);
    const int address = m[13] * 256 + m[14];
    const QString unit = SelectedUnit();
    const int32_t step = int32_t(Val(txtStepSize->text()));
    double stop = now;
    if (address == 0) {
        optStopDate[0]->setChecked(true);
        if (!unit.isEmpty()) stop = MemoryEndDate(start, step, unit);
    } else {
        optStopDate[1]->setChecked(true);
        const int n = CLng((address - 96) / 7.0);
        if (!unit.isEmpty()) stop = DateAdd(unit, double(n) * step, start);
    }
    ShowGroupDate(1, stop);
}

void frmMonitor::btnStopMonitor_Click() {
    if (!StopMonitor()) return;
    Shared().MonitorState = 0;
    Host().UpdateInfo();
    lblStatus->setText(QStringLiteral("TERMINATO (STOP UTENTE)"));
    Paint(lblStatus, 0xC0FFC0);
    btnStartMonitor->setEnabled(true);
    btnStopMonitor->setEnabled(false);
}

void frmMonitor::btnStartMonitor_Click() {
    SessionRequest r;
    r.stepText = txtStepSize->text();
    r.unit = SelectedUnit();
    double d = 0;
    if (optStartDate[1]->isChecked()) r.start = GroupDate(0, &d) ? d : -1e9;
    if (optStopDate[1]->isChecked()) r.stop = GroupDate(1, &d) ? d : -1e9;
    ProgramSession(r, *this);
}

void frmMonitor::Begin() {
    for (QLabel *l : imgStatus) l->clear();
    for (QLabel *l : lblText) {
        l->setFrameShape(QFrame::NoFrame);
        l->setStyleSheet(QString());
    }
    pages->setCurrentWidget(fmeProgress);
    btnClose->setEnabled(false);
    fmeProgress->repaint();
}

void frmMonitor::SetState(int step) {
    if (step > 0) {
        lblText[size_t(step - 1)]->setFrameShape(QFrame::Box);
        lblText[size_t(step - 1)]->setStyleSheet(QStringLiteral("color:black"));
        imgStatus[size_t(step - 1)]->setPixmap(StatusImage(5, 18));
    }
    if (step < 4) lblText[size_t(step)]->setStyleSheet(QStringLiteral("color:#c0ffc0"));
    fmeProgress->repaint();
    // A short pause so each step can be seen.
    QThread::msleep(310);
}

void frmMonitor::MarkFailed(int step) {
    lblText[size_t(step)]->setFrameShape(QFrame::Box);
    lblText[size_t(step)]->setStyleSheet(QStringLiteral("color:red"));
    imgStatus[size_t(step)]->setPixmap(StatusImage(4, 18));
}

void frmMonitor::WaitForClose() {
    WaitFlag = true;
    btnClose->setEnabled(true);
    while (WaitFlag && isVisible()) QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    btnClose->setEnabled(false);
}

void frmMonitor::End(bool started) {
    if (started) {
        lblStatus->setText(ResString(3010));
        Paint(lblStatus, 0xC0C0FF);
        btnStartMonitor->setEnabled(false);
        btnStopMonitor->setEnabled(true);
    }
    pages->setCurrentWidget(fmeMonitor);
}

} // namespace fm
