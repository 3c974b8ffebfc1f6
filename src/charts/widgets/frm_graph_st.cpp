#include "charts/widgets/frm_graph_st.h"

#include "analysis/statistics.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_image.h"
#include "charts/widgets/chart_window.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/colors.h"
#include "core/widgets/icons.h"
#include "core/widgets/number_keys.h"
#include "core/widgets/set_up_form.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/view_window.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace fm {
namespace {
constexpr double kLimitMin = 0, kLimitMax = 50;
frmGraphSt *g_open = nullptr;

// The number at the start of a box, with a decimal point only: an empty box is 0.
double BoxValue(const QLineEdit *box) {
    return Val(box->text());
}

QString LimitText(float value) {
    return FormatNumber(value, u"0.##").replace(QLatin1Char(','), QLatin1Char('.'));
}

QToolButton *SpinButton(QWidget *parent, Qt::ArrowType arrow) {
    auto *b = new QToolButton(parent);
    b->setArrowType(arrow);
    b->setFixedSize(b->minimumSizeHint().expandedTo(QSize(16, 11)));  // never narrower than its arrow
    b->setAutoRepeat(true);
    return b;
}
}  // namespace

frmGraphSt *frmGraphSt::Current() {
    return g_open;
}

frmGraphSt::frmGraphSt(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmGraphSt"));
    SetTag(this, 4008);
    teeStatistics = new ChartControl(this);
    auto *panel = Tagged<QGroupBox>(this, "Chart Control", 4009);
    auto *g = new QGridLayout(panel);
    lblText[0] = Tagged<QLabel>(panel, "Minimo", 4010);
    lblText[1] = Tagged<QLabel>(panel, "Massimo", 4011);
    lblText[2] = Tagged<QLabel>(panel, "Numero Categiorie", 4012);
    txtMinValue = new QLineEdit(panel);
    txtMaxValue = new QLineEdit(panel);
    int row = 0;
    for (int k = 0; k < 2; ++k) {
        QLineEdit *box = k == 0 ? txtMinValue : txtMaxValue;
        auto &upd = k == 0 ? updMin : updMax;
        InstallNumberKeys(box);
        box->installEventFilter(this);  // the limits on leaving the box
        upd[0] = SpinButton(panel, Qt::UpArrow);
        upd[1] = SpinButton(panel, Qt::DownArrow);
        auto *spin = new QVBoxLayout;
        spin->setSpacing(0);
        spin->addWidget(upd[0]);
        spin->addWidget(upd[1]);
        for (int d = 0; d < 2; ++d) {
            connect(upd[size_t(d)], &QToolButton::clicked, this, [box, d] {
                // The up-down control moves the box by whole units within its own range.
                const double v = std::round(BoxValue(box)) + (d == 0 ? 1 : -1);
                box->setText(QString::number(int(std::clamp(v, kLimitMin, kLimitMax))));
            });
        }
        g->addWidget(lblText[size_t(k)], row++, 0, 1, 2);
        g->addWidget(box, row, 0);
        g->addLayout(spin, row++, 1);
    }
    cboNumClassi = new QComboBox(panel);
    for (int n = 3; n <= 11; ++n) cboNumClassi->addItem(Str(n));
    btnRefresh = Tagged<QPushButton>(panel, "Refresh", 4013);
    btnRefresh->setToolTip(ResString(4145));
    g->addWidget(lblText[2], row++, 0, 1, 2);
    g->addWidget(cboNumClassi, row++, 0, 1, 2);
    g->addWidget(btnRefresh, row++, 0, 1, 2);
    g->setRowStretch(row, 1);
    tbrGraphSt = ChartToolbar(this, [this] { SaveImage(); }, "ST");
    LayOutChartWindow(this, teeStatistics, tbrGraphSt, panel);
    SetUpForm(this);
    connect(btnRefresh, &QPushButton::clicked, this, &frmGraphSt::Refresh);

    // The first limits are the measurement's own, even beyond the boxes' range.
    const MeasurementData &d = Data();
    txtMinValue->setText(LimitText(d.DataMin));
    txtMaxValue->setText(LimitText(d.DataMax));
    cboNumClassi->setCurrentIndex(8);
    GraphSetup();
    DoStatistics(float(BoxValue(txtMinValue)), float(BoxValue(txtMaxValue)), 11);
    DrawGraph();
    g_open = this;
    Shared().GraphStOpen = true;
}

frmGraphSt::~frmGraphSt() {
    Unload();
}

// The window is deleted later than it closes; by then a new chart may stand open.
void frmGraphSt::Unload() {
    if (g_open != this) return;
    g_open = nullptr;
    Shared().GraphStOpen = false;
}

void frmGraphSt::closeEvent(QCloseEvent *e) {
    Unload();
    QWidget::closeEvent(e);
}

bool frmGraphSt::eventFilter(QObject *watched, QEvent *event) {
    auto *box = qobject_cast<QLineEdit *>(watched);
    if (!box || (box != txtMinValue && box != txtMaxValue)) return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) {
        const double v = BoxValue(box);
        // Each box tests its nearer bound first.
        if (box == txtMinValue) {
            if (v < kLimitMin)
                box->setText(QStringLiteral("0"));
            else if (v > kLimitMax)
                box->setText(QStringLiteral("50"));
        } else {
            if (v > kLimitMax)
                box->setText(QStringLiteral("50"));
            else if (v < kLimitMin)
                box->setText(QStringLiteral("0"));
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmGraphSt::Refresh() {
    const double minimum = BoxValue(txtMinValue), maximum = BoxValue(txtMaxValue);
    if (!(maximum > minimum)) {
        Host().MessBox(ResString(30), {}, -1, -1);
        return;  // the chart keeps what it shows
    }
    GraphSetup();
    DoStatistics(float(minimum), float(maximum), float(cboNumClassi->currentIndex() + 3));
    DrawGraph();
}

void frmGraphSt::GraphSetup() {
    TrapVoid("GraphSetup", [this] {
        ChartControl *c = teeStatistics;
        c->RemoveAllSeries();
        c->SetLegendVisible(false);
        c->SetLogarithmic(false);
        c->SetLeftRange(0, 100, 0);
        c->SetLeftTitle(ResString(3043));
        c->SetLeftDecimals(0);
        c->SetBottomTitle(QStringLiteral("(µT)"));
        c->SetBottomLabelAngle(90);
        c->SetBackColor(FromBgr(Options().ColorBackSt));
        c->SetAllowZoom(false);
        c->AddSeries(ChartControl::Bars);
    });
}

void frmGraphSt::DrawGraph() {
    TrapVoid("DrawGraph", [this] {
        ChartControl *c = teeStatistics;
        c->SetTitle(ResString(3037));
        const Histogram &h = Statistics();
        c->SetSeriesColor(0, FromBgr(Options().ColorBars));
        for (int i = 1; i <= h.StatClasses; ++i) c->Add(0, h.StatPercent[size_t(i)], h.StatLabel[size_t(i)]);
        c->Refresh();
    });
}

void frmGraphSt::SaveImage() {
    SaveChartImage(teeStatistics, this, ResString(3036),
                   QStringLiteral("JPEG Image (*.jpg)|*.jpg|Windows Metafile (*.wmf)|*.wmf"));
}

void frmGraphSt::showEvent(QShowEvent *e) {
    setWindowTitle(ViewCaption(4008));
    QWidget::showEvent(e);
}

QMdiSubWindow *ShowGraphSt() {
    frmMain *m = MainForm();
    if (!m || !Data().DataPresent) return nullptr;
    auto *form = new frmGraphSt;
    QMdiSubWindow *w = AddView(form, 10, QSize(620, 420));
    return w;
}
}  // namespace fm
