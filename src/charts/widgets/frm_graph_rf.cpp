#include "charts/widgets/frm_graph_rf.h"

#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_image.h"
#include "charts/widgets/chart_window.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/widgets/colors.h"
#include "core/widgets/set_up_form.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/view_window.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QToolBar>

namespace fm {
namespace {
frmGraphRf *g_open = nullptr;
// The main window's views tell themselves apart by this property; the RF chart is
// closed by every new load.
constexpr int kViewRf = -13;
}  // namespace

frmGraphRf *frmGraphRf::Current() {
    return g_open;
}

frmGraphRf::frmGraphRf(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmGraphRf"));
    SetTag(this, 4205);
    teeEvolution = new ChartControl(this);
    auto *panel = Tagged<QGroupBox>(this, "Chart Control", 4009);
    auto *g = new QGridLayout(panel);
    const TraceKey key = AddTraceKey(g, panel, 0, FromBgr(Options().ColorTrace1), 4206, "RF Field [V/m]");
    Linea = key.line;
    lblDescrizione = key.name;
    chkHidePlot = key.hide;
    connect(chkHidePlot, &QCheckBox::toggled, this, [this](bool hide) {
        teeEvolution->SetActive(0, !hide);
        teeEvolution->HideCross();
    });
    btnFullScale = Tagged<QPushButton>(panel, "Scala 1:1", 4020);
    btnFullScale->setToolTip(ResString(4146));
    g->setVerticalSpacing(4);
    g->addWidget(btnFullScale, 1, 0, 1, 3);
    g->setRowStretch(2, 1);
    tbrGraphTe = ChartToolbar(this, [this] { SaveImage(); }, "RF");
    LayOutChartWindow(this, teeEvolution, tbrGraphTe, panel);
    SetUpForm(this);
    connect(btnFullScale, &QPushButton::clicked, teeEvolution, &ChartControl::UndoZoom);
    connect(teeEvolution, &ChartControl::pointClicked, this,
            [](int, int point) { frmSource::GetSourceRow(point); });
    GraphSetup();
    DrawGraph();
    g_open = this;
    Shared().GraphRfOpen = true;
}

frmGraphRf::~frmGraphRf() {
    Unload();
}

// The window is deleted later than it closes; by then a new chart may stand open.
void frmGraphRf::Unload() {
    if (g_open != this) return;
    g_open = nullptr;
    Shared().GraphRfOpen = false;
}

void frmGraphRf::closeEvent(QCloseEvent *e) {
    Unload();
    QWidget::closeEvent(e);
}

void frmGraphRf::GraphSetup() {
    TrapVoid("GraphSetup", [this] {
        ChartControl *c = teeEvolution;
        c->RemoveAllSeries();
        c->SetLeftTitle(ResString(3033) + QStringLiteral(" (V/m)"));  // the RF field is not in µT
        c->SetBackColor(FromBgr(Options().ColorBackTe));
        c->SetLegendVisible(false);
        c->SetAllowZoom(true);
        c->AddSeries(ChartControl::Line);
        c->SetSeriesTitle(0, ResString(54));
        c->SetSeriesColor(0, FromBgr(Options().ColorTrace1));
    });
}

void frmGraphRf::DrawGraph() {
    TrapVoid("DrawGraph", [this] {
        const MeasurementData &d = Data();
        ChartControl *c = teeEvolution;
        c->SetTitle(ResString(3034));
        const QString progress = ResString(3035);
        const int32_t n = DrawableSamples(d.DataRf.size());
        // No null points: a field of 0 or less is drawn as it is.
        for (int32_t i = 1; i <= n; ++i) {
            if (i % 100 == 0 && (int64_t(i) * 100 / n) != (int64_t(i - 100) * 100 / n))
                Host().SetPanelText(progress + QString::number(int64_t(i) * 100 / n) + QLatin1Char('%'));
            c->Add(0, d.DataRf[size_t(i)]);
        }
        c->SetLabelFunction(SampleDateLabels());
        const double range = double(d.RfMax) - double(d.RfMin);
        const double increment = range / 30;
        // "#0.0#": the marks fall on multiples of the increment, which need the second decimal.
        c->SetLeftDecimals(2);
        c->SetLeftRange(0, d.RfMax + range / 10, increment);
        // The threshold is a field in µT; it stands on this axis in V/m all the same.
        c->SetLevelLine(Options().Soglia, FromBgr(Options().ColorSoglia));
        c->Refresh();
        Host().SetPanelText(QString());
    });
}

void frmGraphRf::GetChartPoint(int32_t sample) {
    TrapVoid("GetChartPoint", [&] { CrossOnSample(teeEvolution, 0, sample); });
}

bool frmGraphRf::CrossOnPoint(int32_t point) {
    return fm::CrossOnPoint(teeEvolution, 0, point);
}

void frmGraphRf::SaveImage() {
    SaveChartImage(teeEvolution, this, ResString(3007),
                   ResString(3008) + QStringLiteral(" (*.jpg)|*.jpg|") + ResString(3009) +
                       QStringLiteral(" (*.wmf)|*.wmf"));
}

void frmGraphRf::showEvent(QShowEvent *e) {
    setWindowTitle(ViewCaption(4205));
    QWidget::showEvent(e);
}

QMdiSubWindow *ShowGraphRf() {
    frmMain *m = MainForm();
    if (!m || !Data().DataPresent || !Data().DataIsCsv) return nullptr;
    if (frmGraphRf::Current()) {
        for (QMdiSubWindow *w : m->mdiArea->subWindowList())
            if (w->widget() == frmGraphRf::Current()) {
                m->mdiArea->setActiveSubWindow(w);
                return w;
            }
    }
    QMdiSubWindow *w = AddView(new frmGraphRf, 9, QSize(760, 460));
    w->setProperty("viewButton", kViewRf);
    return w;
}
}  // namespace fm
