#include "charts/widgets/frm_graph_te.h"

#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_image.h"
#include "charts/widgets/chart_window.h"
#include "charts/widgets/frm_graph_rf.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/colors.h"
#include "core/widgets/icons.h"
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
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace fm {
namespace {
uint32_t TraceColor(int k) {
    const OptionsRecord &o = Options();
    const uint32_t c[] = {o.ColorTrace1, o.ColorTrace2, o.ColorTrace3, o.ColorTrace4};
    return c[k];
}
frmGraphTe *g_open = nullptr;
}  // namespace

frmGraphTe *frmGraphTe::Current() {
    return g_open;
}

frmGraphTe::frmGraphTe(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmGraphTe"));
    SetTag(this, 4014);
    teeEvolution = new ChartControl(this);
    auto *panel = Tagged<QGroupBox>(this, "Chart Control", 4009);
    auto *g = new QGridLayout(panel);
    for (int k = 0; k < 4; ++k) {
        const TraceKey key = AddTraceKey(g, panel, k, FromBgr(TraceColor(k)));
        Linea[size_t(k)] = key.line;
        lblDescrizione[size_t(k)] = key.name;
        chkHidePlot[size_t(k)] = key.hide;
        connect(chkHidePlot[size_t(k)], &QCheckBox::toggled, this, [this, k](bool hide) {
            teeEvolution->SetActive(k, !hide);
            if (k == 3) teeEvolution->HideCross();
        });
    }
    chkLogaritmic = Tagged<QCheckBox>(panel, "X Logaritmico", 4208);
    btnFullScale = Tagged<QPushButton>(panel, "Scala 1:1", 4020);
    btnFullScale->setToolTip(ResString(4146));
    btnShowRf = Tagged<QPushButton>(panel, "Mostra dati RF", 4207);
    btnShowRf->setVisible(Data().DataIsCsv);
    g->setVerticalSpacing(4);
    g->addWidget(chkLogaritmic, 4, 0, 1, 3);
    g->addWidget(btnFullScale, 5, 0, 1, 3);
    g->addWidget(btnShowRf, 6, 0, 1, 3);
    g->setRowStretch(7, 1);
    tbrGraphTe = ChartToolbar(this, [this] { SaveImage(); }, "TE");
    LayOutChartWindow(this, teeEvolution, tbrGraphTe, panel);
    SetUpForm(this);
    connect(chkLogaritmic, &QCheckBox::toggled, this, [this] {
        GraphSetup();
        DrawGraph();
    });
    connect(btnFullScale, &QPushButton::clicked, teeEvolution, &ChartControl::UndoZoom);
    connect(btnShowRf, &QPushButton::clicked, this, [] {
        Host().SetBusy(true);
        ShowGraphRf();
        Host().SetBusy(false);
    });
    // A point of any trace stands for its sample; the cross goes on the resultant.
    connect(teeEvolution, &ChartControl::pointClicked, this,
            [](int, int point) { frmSource::GetSourceRow(point); });
    GraphSetup();
    DrawGraph();
    g_open = this;
    Shared().GraphTeOpen = true;
}

frmGraphTe::~frmGraphTe() {
    Unload();
}

// The window is deleted later than it closes; by then a new chart may stand open.
void frmGraphTe::Unload() {
    if (g_open != this) return;
    g_open = nullptr;
    Shared().GraphTeOpen = false;
}

void frmGraphTe::closeEvent(QCloseEvent *e) {
    Unload();
    QWidget::closeEvent(e);
}

void frmGraphTe::GraphSetup() {
    ChartControl *c = teeEvolution;
    c->RemoveAllSeries();
    c->SetLeftTitle(ResString(3033) + QStringLiteral(" (µT)"));
    c->SetLogarithmic(chkLogaritmic->isChecked());
    c->SetBackColor(FromBgr(Options().ColorBackTe));
    c->SetLegendVisible(false);
    c->SetAllowZoom(true);
    for (int k = 0; k < 4; ++k) {
        c->AddSeries(ChartControl::Line);
        c->SetSeriesTitle(k, ResString(3038 + k));
        c->SetSeriesColor(k, FromBgr(TraceColor(k)));
        c->SetActive(k, !chkHidePlot[size_t(k)]->isChecked());
    }
}

void frmGraphTe::DrawGraph() {
    TrapVoid("DrawGraph", [this] {
        const MeasurementData &d = Data();
        ChartControl *c = teeEvolution;
        c->SetTitle(ResString(3034));
        const QString progress = ResString(3035);
        // Each trace is built once, in the type it is held in, and handed over whole; never
        // past the arrays, whatever the count says.
        const int32_t n = DrawableSamples(
            std::min({d.DataX.size(), d.DataY.size(), d.DataZ.size(), d.DataValue.size()}));
        const float none = std::numeric_limits<float>::quiet_NaN();
        const auto count = static_cast<size_t>(n);
        std::vector<float> x(count), y(count), z(count);
        std::vector<double> r(count);
        for (int32_t i = 1; i <= n; ++i) {
            if (i % 100 == 0 && (int64_t(i) * 100 / n) != (int64_t(i - 100) * 100 / n))
                Host().SetPanelText(progress + QString::number(int64_t(i) * 100 / n) + QLatin1Char('%'));
            const size_t k = size_t(i), p = k - 1;
            if (!(d.DataValue[k] > 0)) {
                x[p] = y[p] = z[p] = none;
                r[p] = double(none);
            } else {
                x[p] = d.DataX[k];
                y[p] = d.DataY[k];
                z[p] = d.DataZ[k];
                r[p] = d.DataValue[k];
            }
        }
        c->SetValues(0, std::move(x));
        c->SetValues(1, std::move(y));
        c->SetValues(2, std::move(z));
        c->SetValues(3, std::move(r));
        c->SetLabelFunction(SampleDateLabels());
        const double range = double(d.DataMax) - double(d.DataMin);
        if (chkLogaritmic->isChecked())
            c->SetLeftRange(0.0001, d.DataMax + range / 10, 0);
        else
            c->SetLeftRange(0, d.DataMax + range / 10, range / 30);
        c->SetLevelLine(Options().Soglia, FromBgr(Options().ColorSoglia));
        c->Refresh();
        Host().SetPanelText(QString());
    });
}

void frmGraphTe::GetChartPoint(int32_t sample) {
    TrapVoid("GetChartPoint", [&] { CrossOnSample(teeEvolution, 3, sample); });
}

bool frmGraphTe::CrossOnPoint(int32_t point) {
    return fm::CrossOnPoint(teeEvolution, 3, point);
}

void frmGraphTe::SaveImage() {
    SaveChartImage(teeEvolution, this, ResString(3007),
                   ResString(3008) + QStringLiteral(" (*.jpg)|*.jpg|") + ResString(3009) +
                       QStringLiteral(" (*.wmf)|*.wmf"));
}

void frmGraphTe::showEvent(QShowEvent *e) {
    setWindowTitle(ViewCaption(4014));
    QWidget::showEvent(e);
}

QMdiSubWindow *ShowGraphTe() {
    frmMain *m = MainForm();
    if (!m || !Data().DataPresent) return nullptr;
    auto *form = new frmGraphTe;
    QMdiSubWindow *w = AddView(form, 9, QSize(760, 460));
    return w;
}
}  // namespace fm
