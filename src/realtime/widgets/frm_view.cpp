#include "realtime/widgets/frm_view.h"

#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_window.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/colors.h"
#include "core/widgets/set_up_form.h"
#include "realtime/live_intake.h"
#include "realtime/live_mode.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/view_window.h"

#include <qcustomplot.h>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>

namespace fm {
namespace {
constexpr uint32_t kGreen = 49152;

uint32_t TraceColor(int k) {
    const OptionsRecord &o = Options();
    const uint32_t c[] = {o.ColorTrace1, o.ColorTrace2, o.ColorTrace3, o.ColorTrace4};
    return c[k];
}

QPixmap StatePicture(bool running) {
    const qreal ratio = qGuiApp->devicePixelRatio();  // sharp on a HiDPI screen
    QPixmap p(QSize(20, 20) * ratio);
    p.setDevicePixelRatio(ratio);
    p.fill(Qt::transparent);
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    g.setPen(QPen(Qt::darkGray, 1));
    g.setBrush(running ? QColor(0, 200, 0) : QColor(200, 0, 0));
    g.drawEllipse(QRectF(2, 2, 16, 16));
    return p;
}
}  // namespace

// ---- The drawing -------------------------------------------------------------------

VectorSurface::VectorSurface(QWidget *parent) : QWidget(parent) {
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::white);
    setPalette(p);
}

void VectorSurface::PreparaDisegno() {
    TrapVoid("PreparaDisegno", [this] {
        // At the widget's pixel ratio: drawn over 1:1, its lines and letters stay sharp.
        const qreal ratio = devicePixelRatioF();
        fixed_ = QPixmap(QSize(std::max(1, width()), std::max(1, height())) * ratio);
        fixed_.setDevicePixelRatio(ratio);
        fixed_.fill(Qt::white);
        QPainter g(&fixed_);
        g.setPen(QPen(Qt::black, 1));
        for (const QLineF &l : FixedLines(area)) g.drawLine(l);
        g.setPen(FromBgr(Options().ColorDraw));
        const auto letters = LetterPositions(area);
        const char *names[] = {"z", "x", "y"};
        const QFontMetrics fm(font());
        for (int i = 0; i < 3; ++i)
            g.drawText(letters[size_t(i)] + QPointF(0, fm.ascent()), QLatin1String(names[i]));
        update();
    });
}

void VectorSurface::paintEvent(QPaintEvent *) {
    QPainter g(this);
    g.drawPixmap(0, 0, fixed_);
    g.setRenderHint(QPainter::Antialiasing);
    g.setPen(QPen(QColor(0, 0, 255), 1, Qt::DotLine));
    for (const QLineF &l : {placement.xProiez, placement.yProiez, placement.zProiez}) g.drawLine(l);
    g.setPen(QPen(Qt::red, 1.5));
    g.drawLine(placement.vettore);
    const QPointF tip = placement.vettore.p2();
    g.setPen(Qt::NoPen);
    g.setBrush(Qt::red);
    g.drawEllipse(tip, 4, 4);  // 120 twips across
    g.setPen(Qt::black);
    g.drawText(QPointF(area.ScreenX(placement.sx + 5), area.ScreenY(placement.sy) + fontMetrics().ascent()),
               caption);
}

LevelMeter::LevelMeter(QWidget *parent) : QWidget(parent) {
    setMinimumSize(120, 16);
}

void LevelMeter::paintEvent(QPaintEvent *) {
    QPainter g(this);
    g.fillRect(rect(), Qt::white);
    const int step = width() / 20, h = height(), gapX = step / 7, gapY = h / 5;
    for (int k = 1; k <= 23; ++k)
        g.fillRect(QRect(QPoint((k - 1) * step + gapX, gapY), QPoint(k * step - gapX - 1, h - gapY - 1)),
                   color);
    // The mask: everything right of the reading is covered.
    const int left = int(std::clamp(reading, 0.0, 1.0) * width());
    g.fillRect(QRect(left, 0, width() - left, h), palette().color(QPalette::Window));
    g.setPen(Qt::gray);
    g.drawRect(rect().adjusted(0, 0, -1, -1));
}

// ---- The window --------------------------------------------------------------------

frmView::frmView(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmView"));
    SetTag(this, 4075);
    LiveRecord &rt = Live();
    rt.RTCount = 0;
    rt.RTStepUnit = QStringLiteral("s");
    rt.RTStep = 3;
    rt.RTShowInfo = false;
    rt.RTShortID = QString(16, QLatin1Char(' '));
    rt.RTLongID = QString(48, QLatin1Char(' '));

    teeRealEvolution = new ChartControl(this);
    auto *control = Tagged<QGroupBox>(this, "Chart Control", 4009);
    auto *cg = new QGridLayout(control);
    for (int k = 0; k < 4; ++k) {
        const TraceKey key = AddTraceKey(cg, control, k, FromBgr(TraceColor(k)));
        shpLine[size_t(k)] = key.line;
        Label1[size_t(k)] = key.name;
        chkShowTrace[size_t(k)] = key.hide;
        connect(chkShowTrace[size_t(k)], &QCheckBox::toggled, this,
                [this, k](bool hide) { teeRealEvolution->SetActive(k, !hide); });
    }
    chkAxisType = Tagged<QCheckBox>(control, "Asse Y Logaritmico", 4208);
    chkBeeper = new QCheckBox(QStringLiteral("Attiva l'allarme acustico"), control);
    cg->addWidget(chkAxisType, 4, 0, 1, 3);
    cg->addWidget(chkBeeper, 5, 0, 1, 3);
    cg->setRowStretch(6, 1);
    control->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);  // as wide as its texts

    btnStartRealTime = Tagged<QPushButton>(this, "Start Real Time", 4082);
    btnStopRealTime = Tagged<QPushButton>(this, "Stop Real Time", 4077);
    imgStato = new QLabel(this);
    imgStato->setPixmap(StatePicture(false));
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(btnStartRealTime);
    buttons->addWidget(btnStopRealTime);
    buttons->addWidget(imgStato, 0, Qt::AlignHCenter);
    buttons->addStretch(1);

    Disegno = new VectorSurface(this);
    Disegno->setMinimumSize(300, 300);  // the vector stays readable
    auto *scale = new QVBoxLayout;
    scale->setSpacing(1);
    scale->addWidget(new QLabel(QStringLiteral("T/div"), this), 0, Qt::AlignHCenter);
    for (int i = 0; i < 9; ++i) {
        auto *b = new QPushButton(QLatin1String(kScaleCaptions[size_t(i)]), this);
        b->setCheckable(true);
        b->setFixedSize(b->minimumSizeHint().expandedTo(QSize(40, 22)));  // room for its caption
        connect(b, &QPushButton::clicked, this, [this, i] { MoltButton_Click(i); });
        scale->addWidget(b);
        MoltButton[size_t(i)] = b;
    }
    scale->addStretch(1);

    fmeMeasures = Tagged<QGroupBox>(this, "Measures ", 4076);
    auto *mg = new QGridLayout(fmeMeasures);
    const char *pval[] = {"Px =", "Py =", "Pz =", "P  ="};
    for (int i = 0; i < 4; ++i) {
        Pval[size_t(i)] = new QLabel(QLatin1String(pval[i]), fmeMeasures);
        Pval[size_t(i)]->setStyleSheet(QStringLiteral("font-weight:bold"));
        VMeter[size_t(i)] = new LevelMeter(fmeMeasures);
        VMStart[size_t(i)] = new QLabel(QStringLiteral("0 µT"), fmeMeasures);
        VMStop[size_t(i)] = new QLabel(QStringLiteral("XXX uT"), fmeMeasures);
        VMStop[size_t(i)]->setAlignment(Qt::AlignRight);
        mg->addWidget(Pval[size_t(i)], 3 * i, 0, 1, 2);
        mg->addWidget(VMeter[size_t(i)], 3 * i + 1, 0, 1, 2);
        mg->addWidget(VMStart[size_t(i)], 3 * i + 2, 0);
        mg->addWidget(VMStop[size_t(i)], 3 * i + 2, 1);
    }
    mg->setRowStretch(12, 1);
    fmeMeasures->setMinimumWidth(180);

    auto *top = new QHBoxLayout;
    top->addWidget(teeRealEvolution, 1);
    top->addWidget(control);
    auto *bottom = new QHBoxLayout;
    bottom->addLayout(buttons);
    bottom->addWidget(Disegno, 1);
    bottom->addLayout(scale);
    bottom->addWidget(fmeMeasures);
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(2, 2, 2, 2);
    lay->addLayout(top, 3);
    lay->addLayout(bottom, 7);
    SetUpForm(this);

    MoltButton[0]->setChecked(true);
    MeterColor.fill(kGreen);
    ChartSetup();
    connect(chkAxisType, &QCheckBox::toggled, this,
            [this](bool on) { teeRealEvolution->SetLogarithmic(on); });
    chkAxisType->setChecked(true);
    btnStopRealTime->setEnabled(false);
    btnStartRealTime->setEnabled(true);
    connect(btnStartRealTime, &QPushButton::clicked, this, &frmView::StartClicked);
    connect(btnStopRealTime, &QPushButton::clicked, this, &frmView::StopClicked);
    if (frmMain *m = MainForm()) {
        connect(m->mdiArea, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *w) {
            if (w && w->widget() == this)
                UpdateRTInfo();
            else if (MainForm())
                MainForm()->UpdateInfo();  // the data set's figures again
        });
    }
    // Polling that the link stopped (a poll met a command in flight) shows as the stopped
    // lamp while Stop stays enabled, so the user sees that no samples come.
    auto *watch = new QTimer(this);
    connect(watch, &QTimer::timeout, this, [this] {
        if (btnStopRealTime->isEnabled() && Shared().LiveTimer == 0) SetStatePicture(false);
    });
    watch->start(1000);
    SetLiveDisplay(this);
}

frmView::~frmView() {
    if (TheLiveDisplay() == this) SetLiveDisplay(nullptr);
}

void frmView::ChartSetup() {
    ChartControl *c = teeRealEvolution;
    c->RemoveAllSeries();
    for (int k = 0; k < 4; ++k) {
        c->AddSeries(ChartControl::FastLine);
        c->SetSeriesTitle(k, ResString(3038 + k));
        c->SetSeriesColor(k, FromBgr(TraceColor(k)));
    }
    c->SetBackColor(Qt::white);
    c->SetLegendVisible(false);
    c->SetAllowZoom(false);
    c->SetLeftTitle(ResString(3033) + QStringLiteral(" (µT)"));
    c->SetLabelFunction([](int point) {
        const double date = Live().SampleDate(point + 1);
        return ShortDate(date) + QLatin1Char('\n') + LongTime(date);
    });
    c->Refresh();
}

void frmView::StartClicked() {
    if (QFile::exists(RealTimeLogPath()) && !Host().MessBox(ResString(35), {}, 2, 0)) return;
    if (RealTimeView(QStringLiteral("Start"))) SetButtons(true);
}

void frmView::StopClicked() {
    WaitForIdleLink();
    RealTimeView(QStringLiteral("Stop"));
}

void frmView::closeEvent(QCloseEvent *e) {
    if (btnStopRealTime->isEnabled()) StopClicked();
    QWidget::closeEvent(e);
}

void frmView::MoltButton_Click(int index) {
    TrapVoid("MoltButton_Click", [&] {
        MoltButton[size_t(ScaleIndex)]->setChecked(false);
        ScaleIndex = index;
        MoltButton[size_t(index)]->setChecked(true);
        const auto &s = Live().RTSample;
        AggiornaDisegno(s[0], s[1], s[2], false);
    });
}

void frmView::VMeterFill() {
    TrapVoid("VMeterFill", [this] {
        for (int i = 0; i < 4; ++i) {
            VMeter[size_t(i)]->color = FromBgr(MeterColor[size_t(i)]);
            VMeter[size_t(i)]->update();
            VMStart[size_t(i)]->setText(QStringLiteral("0 µT"));
            VMStop[size_t(i)]->setText(Str(MeterMax[size_t(i)]).trimmed() + QStringLiteral(" µT"));
        }
    });
}

void frmView::AggiornaDisegno(float x, float y, float z, bool addToChart) {
    TrapVoid("AggiornaDisegno", [&] {
        const SharedState &s = Shared();
        const OptionsRecord &o = Options();
        Disegno->placement = PlaceVector(Disegno->area, x, y, z, ScaleIndex);
        bool repaint = false;
        std::array<QString, 3> formats;
        const float values[] = {x, y, z};
        for (int i = 0; i < 3; ++i) {
            const MeterReading m = AxisMeter(i, values[i], s.LowRange, s.HighRange);
            Pval[size_t(i)]->setText(m.text);
            formats[size_t(i)] = m.format;
            VMeter[size_t(i)]->reading = m.fraction;
            VMeter[size_t(i)]->update();
            const uint32_t color = m.high ? o.ColorMeterHigh : o.ColorMeterLow;
            if (MeterColor[size_t(i)] != color) {
                MeterColor[size_t(i)] = color;
                MeterMax[size_t(i)] = float(m.fullScale);
                repaint = true;
            }
        }
        const double r = std::sqrt(double(x) * x + double(y) * y + double(z) * z);  // in doubles, as drawn
        const MeterReading m = ResultantMeter(r, s.LowRange, s.HighRange);
        Pval[3]->setText(m.text);
        VMeter[3]->reading = m.fraction;
        VMeter[3]->update();
        const uint32_t color = m.high ? o.ColorMeterHigh : o.ColorMeterLow;
        if (MeterColor[3] != color) {
            MeterColor[3] = color;
            MeterMax[3] = float(m.fullScale);
            repaint = true;
        }
        if (repaint) VMeterFill();
        Disegno->caption = TipCaption(x, y, z, formats);
        Disegno->update();
        if (!addToChart) return;
        const LiveRecord &rt = Live();
        ChartControl *c = teeRealEvolution;
        c->Append(0, x);
        c->Append(1, y);
        c->Append(2, z);
        c->Append(3, r);
        const AxisLimits a = StripAxis(c->Logarithmic(), rt.RTMax, rt.RTMin);
        c->SetLeftRange(a.minimum, a.maximum, a.increment);
        // An audible alarm above the threshold, as field meters give.
        if (chkBeeper->isChecked() && r > o.Soglia) {
            ++beeps;
            QApplication::beep();
        }
    });
}

bool frmView::Active() const {
    frmMain *m = MainForm();
    QMdiSubWindow *w = m ? m->mdiArea->activeSubWindow() : nullptr;
    return w && w->widget() == this;
}

void frmView::ShowInfo(const InfoTexts &texts) {
    if (frmMain *m = MainForm()) m->Info->Show(texts);
}

void frmView::ClearChart() {
    for (int k = 0; k < 4; ++k) teeRealEvolution->ClearSeries(k);
    teeRealEvolution->Plot()->replot(QCustomPlot::rpQueuedReplot);
}

void frmView::SetButtons(bool live) {
    btnStartRealTime->setEnabled(!live);
    btnStopRealTime->setEnabled(live);
}

void frmView::SetStatePicture(bool running) {
    imgStato->setPixmap(StatePicture(running));
}

void frmView::resizeEvent(QResizeEvent *e) {
    QWidget::resizeEvent(e);
    // The drawing stays square with room for its letters, inside what the layout gives it.
    const QSize room = Disegno->size();
    Disegno->area = DrawArea::Fit(room.width() - 2, room.height());
    Disegno->PreparaDisegno();
    VMeterFill();
    const auto &s = Live().RTSample;
    AggiornaDisegno(s[0], s[1], s[2], false);
}

QMdiSubWindow *ShowRealTimeView() {
    frmMain *m = MainForm();
    if (!m) return nullptr;
    for (QMdiSubWindow *w : m->mdiArea->subWindowList())
        if (qobject_cast<frmView *>(w->widget())) {
            m->mdiArea->setActiveSubWindow(w);
            return w;
        }
    // The drawing is the point of the window: it opens on as much of the area as it can
    // use, never smaller than all its controls need.
    auto *form = new frmView;
    const QSize room = m->mdiArea->size().boundedTo(QSize(1180, 860));
    QMdiSubWindow *w = AddView(form, 6, room.expandedTo(QSize(760, 560)));
    w->move(0, 0);
    KeepInside(w);
    return w;
}
}  // namespace fm
