#include "charts/widgets/frm_exposure.h"

#include "analysis/exposure_text.h"
#include "charts/widgets/exposure_view.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/number_keys.h"
#include "core/widgets/set_up_form.h"
#include "printing/widgets/exposure_report.h"
#include "shell/file_folders.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/view_window.h"

#include <qcustomplot.h>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>

namespace fm {
namespace {
frmExposure *g_open = nullptr;

// The axis numbers in the regional form, as every other number on screen.
class FieldTicker : public QCPAxisTicker {
protected:
    QString getTickLabel(double tick, const QLocale &, QChar, int) override {
        return FormatNumber(tick, u"0.##");
    }
};

// The references at the width their texts need; a window too low scrolls them.
class PanelScroll : public QScrollArea {
public:
    using QScrollArea::QScrollArea;
    QSize sizeHint() const override {
        const QSize inner = widget() ? widget()->sizeHint() : QSize();
        return {inner.width() + Extra(), inner.height()};
    }
    QSize minimumSizeHint() const override {
        const QSize inner = widget() ? widget()->minimumSizeHint() : QSize();
        return {inner.width() + Extra(), std::min(inner.height(), 160)};
    }

private:
    int Extra() const { return 2 * frameWidth() + verticalScrollBar()->sizeHint().width(); }
};

void ShowVerdict(QLabel *label, const QString &text, Verdict verdict) {
    label->setText(text);
    const char *color = verdict == Verdict::Met        ? "#23793a"
                        : verdict == Verdict::Exceeded ? "#b3261e"
                                                       : "#5f6b76";
    label->setStyleSheet(QStringLiteral("color:%1").arg(QLatin1String(color)));
}

QString ValueText(double value) {
    return FormatNumber(value, u"0.######").replace(QLatin1Char(','), QLatin1Char('.'));
}

QLabel *VerdictLabel(QWidget *parent) {
    auto *l = new QLabel(parent);
    l->setIndent(22);  // under the name, clear of the check box
    // A long verdict takes a second line: the names and values set the panel's width.
    l->setWordWrap(true);
    l->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    l->setMinimumHeight(l->fontMetrics().height());
    return l;
}
}  // namespace

frmExposure *frmExposure::Current() {
    return g_open;
}

frmExposure::frmExposure(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmExposure"));
    auto *content = new QWidget;
    QWidget *figures = FiguresPanel();
    auto *scroll = new PanelScroll(content);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setWidget(ReferencesPanel());
    scroll->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    auto *lay = new QHBoxLayout(content);
    lay->setContentsMargins(4, 4, 4, 4);
    lay->addWidget(figures, 1);
    lay->addWidget(scroll);
    // Tiled small beside the other views, the window scrolls to its controls instead of
    // standing over its neighbours.
    auto *outer = new QScrollArea(this);
    outer->setObjectName(QStringLiteral("scrExposure"));
    outer->setFrameShape(QFrame::NoFrame);
    outer->setWidgetResizable(true);
    outer->setWidget(content);
    auto *top = new QVBoxLayout(this);
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(outer);
    SetUpForm(this);

    saved_ = ReadExposurePrefs();
    const auto refs = BuiltInReferences();
    for (size_t k = 0; k < refs.size(); ++k)
        references[k].check->setChecked(saved_.references.contains(refs[k].id));
    chkOwn->setChecked(saved_.own);
    txtOwnName->setText(saved_.ownName);
    if (saved_.ownValue > 0) txtOwnValue->setText(ValueText(saved_.ownValue));
    cboOwnBasis->setCurrentIndex(saved_.ownBasis == ExposureBasis::DailyMedian ? 0 : 1);
    txtSite->setText(saved_.site);
    txtNotes->setPlainText(saved_.notes);

    // Ticks and choices show their verdict at once and are kept at once; typed texts
    // are kept once the box is left.
    for (const ReferenceRow &row : references)
        connect(row.check, &QCheckBox::toggled, this, [this] {
            ShowVerdicts();
            Remember();
        });
    connect(chkOwn, &QCheckBox::toggled, this, [this] {
        ShowVerdicts();
        Remember();
    });
    connect(cboOwnBasis, &QComboBox::currentIndexChanged, this, [this] {
        ShowVerdicts();
        Remember();
    });
    connect(txtOwnValue, &QLineEdit::textEdited, this, [this](const QString &text) {
        // A value typed is a value meant to be judged.
        if (!text.trimmed().isEmpty()) chkOwn->setChecked(true);
        ShowVerdicts();
    });
    for (QLineEdit *box : {txtOwnName, txtOwnValue, txtSite})
        connect(box, &QLineEdit::editingFinished, this, &frmExposure::Remember);
    connect(btnReport, &QPushButton::clicked, this, &frmExposure::SaveReport);
    connect(btnPrint, &QPushButton::clicked, this, &frmExposure::PrintReport);

    Recompute();
    g_open = this;
}

QWidget *frmExposure::FiguresPanel() {
    auto *panel = new QWidget(this);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(3);
    int row = 0;
    const auto add = [&](const QString &caption, QLabel *&value) {
        auto *label = new QLabel(caption, panel);
        value = new QLabel(panel);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setWordWrap(true);
        grid->addWidget(label, row, 0);
        grid->addWidget(value, row++, 1);
        return label;
    };
    add(ResString(4477), lblHighest);
    add(QStringLiteral("P50 / P90 / P95 / P99"), lblPercentiles);
    add(ResString(4011), lblMaximum);
    add(ResString(4448), lblMean);
    lblAboveCaption = add(QString(), lblAbove);
    add(ResString(4480), lblLongest);
    grid->setColumnStretch(1, 1);
    // A window made narrow wraps a dated figure once, never a number.
    grid->setColumnMinimumWidth(
        1, fontMetrics().horizontalAdvance(QStringLiteral("00.00 / 00.00 / 00.00 / 00.00 µT")));

    grdPeriods = new QTableWidget(0, 5, panel);
    grdPeriods->setObjectName(QStringLiteral("grdPeriods"));
    grdPeriods->setHorizontalHeaderLabels({ResString(4080), ResString(3051) + QStringLiteral(" (µT)"),
                                           ResString(4473), ResString(4474), QString()});
    grdPeriods->verticalHeader()->hide();
    grdPeriods->horizontalHeader()->setStretchLastSection(true);
    grdPeriods->setSelectionBehavior(QAbstractItemView::SelectRows);
    grdPeriods->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdPeriods->setMinimumHeight(90);

    pltHours = new QCustomPlot(panel);
    pltHours->setObjectName(QStringLiteral("pltHours"));
    pltHours->setMinimumHeight(130);
    pltHours->plotLayout()->insertRow(0);
    QFont title = font();
    title.setBold(true);
    pltHours->plotLayout()->addElement(0, 0, new QCPTextElement(pltHours, ResString(4481), title));
    auto hours = QSharedPointer<QCPAxisTickerFixed>(new QCPAxisTickerFixed);
    hours->setTickStep(3);
    hours->setScaleStrategy(QCPAxisTickerFixed::ssNone);
    pltHours->xAxis->setTicker(hours);
    pltHours->xAxis->setSubTicks(false);
    pltHours->yAxis->setTicker(QSharedPointer<QCPAxisTicker>(new FieldTicker));
    for (QCPAxis *axis : {pltHours->xAxis, pltHours->yAxis})
        axis->setTickLabelFont(QFont(font().family(), 8));

    auto *lay = new QVBoxLayout(panel);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->addLayout(grid);
    lay->addWidget(grdPeriods, 3);
    lay->addWidget(pltHours, 2);
    return panel;
}

QWidget *frmExposure::ReferencesPanel() {
    auto *panel = new QWidget;
    auto *group = new QGroupBox(ResString(4482), panel);
    auto *grid = new QGridLayout(group);
    grid->setVerticalSpacing(1);
    int row = 0;
    for (const ExposureReference &r : BuiltInReferences()) {
        ReferenceRow line{new QCheckBox(ExposureReferenceName(r), group), VerdictLabel(group)};
        line.check->setObjectName(QStringLiteral("chk-") + r.id);
        auto *value = new QLabel(FormatNumber(r.value, u"0.##") + QStringLiteral(" µT"), group);
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto *basis = new QLabel(ExposureBasisText(r.basis), group);
        basis->setAlignment(Qt::AlignRight | Qt::AlignTop);
        basis->setStyleSheet(QStringLiteral("color:#5f6b76"));
        grid->addWidget(line.check, row, 0);
        grid->addWidget(value, row++, 1);
        grid->addWidget(line.verdict, row, 0);
        grid->addWidget(basis, row++, 1);
        references.push_back(line);
    }
    chkOwn = new QCheckBox(group);
    chkOwn->setToolTip(ResString(4493));
    txtOwnName = new QLineEdit(group);
    txtOwnName->setPlaceholderText(ResString(4493));
    txtOwnValue = new QLineEdit(group);
    txtOwnValue->setAlignment(Qt::AlignRight);
    txtOwnValue->setFixedWidth(txtOwnValue->fontMetrics().horizontalAdvance(QStringLiteral("00000.000")) +
                               12);
    InstallNumberKeys(txtOwnValue);
    cboOwnBasis = new QComboBox(group);
    cboOwnBasis->addItems({ExposureBasisText(ExposureBasis::DailyMedian), ExposureBasisText(ExposureBasis::Maximum)});
    auto *own = new QHBoxLayout;
    own->addWidget(chkOwn);
    own->addWidget(txtOwnName, 1);
    grid->addLayout(own, row, 0);
    auto *value = new QHBoxLayout;
    value->addWidget(txtOwnValue);
    value->addWidget(new QLabel(QStringLiteral("µT"), group));
    grid->addLayout(value, row++, 1);
    lblOwnVerdict = VerdictLabel(group);
    grid->addWidget(lblOwnVerdict, row, 0);
    grid->addWidget(cboOwnBasis, row++, 1, Qt::AlignTop);
    grid->setColumnStretch(0, 1);

    auto *report = new QGridLayout;
    txtSite = new QLineEdit(panel);
    txtNotes = new QPlainTextEdit(panel);
    txtNotes->setTabChangesFocus(true);
    txtNotes->setFixedHeight(txtNotes->fontMetrics().lineSpacing() * 3 + 12);
    report->addWidget(new QLabel(ResString(4441), panel), 0, 0);
    report->addWidget(txtSite, 0, 1);
    report->addWidget(new QLabel(ResString(4442), panel), 1, 0, Qt::AlignTop);
    report->addWidget(txtNotes, 1, 1);
    btnReport = new QPushButton(ResString(4496), panel);
    btnPrint = new QPushButton(ResString(4431) + QStringLiteral("..."), panel);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(btnReport);
    buttons->addWidget(btnPrint);

    auto *lay = new QVBoxLayout(panel);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->addWidget(group);
    lay->addLayout(report);
    lay->addLayout(buttons);
    lay->addStretch();
    return panel;
}

frmExposure::~frmExposure() {
    Unload();
}

// The window is deleted later than it closes; by then a new one may stand open.
void frmExposure::Unload() {
    Remember();
    if (g_open == this) g_open = nullptr;
}

void frmExposure::closeEvent(QCloseEvent *e) {
    Unload();
    QWidget::closeEvent(e);
}

void frmExposure::showEvent(QShowEvent *e) {
    setWindowTitle(ViewCaption(4470));
    QWidget::showEvent(e);
}

void frmExposure::Recompute() {
    figures_ = ComputeExposure(Data(), Options().Soglia);
    ShowFigures();
    ShowVerdicts();
}

void frmExposure::ShowFigures() {
    const ExposureFigures &f = figures_;
    QString highest = FieldText(f.highestMedian);
    if (f.highestMedian && f.highestMedianPeriod >= 0)
        highest += QStringLiteral(" (") +
                   ResString(4499).arg(DateTimeText(f.periods[size_t(f.highestMedianPeriod)].start)) +
                   QLatin1Char(')');
    lblHighest->setText(highest);
    QStringList ranks;
    for (const auto &p : {f.p50, f.p90, f.p95, f.p99})
        ranks << (p ? FormatNumber(*p, u"#0.00") : QStringLiteral("---"));
    lblPercentiles->setText(ranks.join(QStringLiteral(" / ")) + (f.p50 ? QStringLiteral(" µT") : QString()));
    lblMaximum->setText(FieldText(f.maximum));
    lblMean->setText(FieldText(f.mean));
    lblAboveCaption->setText(ResString(4479).arg(FormatNumber(f.threshold, u"0.###")));
    // Without a fixed step there are no times, only the share of the samples.
    const QString share = FormatNumber(f.abovePercent, u"0.0") + QStringLiteral(" %");
    lblAbove->setText(f.stepSeconds > 0
                          ? ExposureDuration(f.aboveSeconds) + QStringLiteral(" (") + share + QLatin1Char(')')
                          : share);
    lblLongest->setText(f.longestRunStart && f.stepSeconds > 0
                            ? ExposureDuration(f.longestRunSeconds) + QStringLiteral(", ") +
                                  ResString(4499).arg(DateTimeText(*f.longestRunStart))
                            : QStringLiteral("---"));
    FillPeriods(grdPeriods, f);
    DrawHourlyMeans(pltHours, f);
}

void frmExposure::ShowVerdicts() {
    const auto refs = BuiltInReferences();
    for (size_t k = 0; k < refs.size(); ++k) {
        const ReferenceRow &row = references[k];
        const ReferenceVerdict v = Judge(figures_, refs[k]);
        ShowVerdict(row.verdict, row.check->isChecked() ? VerdictText(v, figures_) : QString(), v.verdict);
    }
    const ExposurePrefs p = Prefs();
    if (!p.own) {
        lblOwnVerdict->clear();
    } else if (p.ownValue <= 0) {
        ShowVerdict(lblOwnVerdict, ResString(4497), Verdict::Exceeded);
    } else {
        const ReferenceVerdict v = Judge(figures_, CustomReference(p.ownName, p.ownValue, p.ownBasis));
        ShowVerdict(lblOwnVerdict, VerdictText(v, figures_), v.verdict);
    }
}

ExposurePrefs frmExposure::Prefs() const {
    ExposurePrefs p;
    const auto refs = BuiltInReferences();
    for (size_t k = 0; k < refs.size(); ++k)
        if (references[k].check->isChecked()) p.references << refs[k].id;
    p.own = chkOwn->isChecked();
    p.ownName = txtOwnName->text();
    const double v = Val(txtOwnValue->text());
    p.ownValue = std::isfinite(v) && v > 0 ? v : 0;
    p.ownBasis = cboOwnBasis->currentIndex() == 0 ? ExposureBasis::DailyMedian : ExposureBasis::Maximum;
    p.site = txtSite->text();
    p.notes = txtNotes->toPlainText();
    return p;
}

void frmExposure::Remember() {
    const ExposurePrefs p = Prefs();
    if (p == saved_) return;
    // Choices that could not be kept cost a few ticks at the next opening, never data:
    // not worth a box in the middle of the work.
    try {
        SaveExposurePrefs(p);
        saved_ = p;
    } catch (const Fault &) {
    }
}

void frmExposure::SaveReport() {
    Remember();
    frmMain *m = MainForm();
    CommonDialog local;
    CommonDialog &dlg = m ? m->dlgFile : local;
    dlg = CommonDialog{};
    dlg.DialogTitle = ResString(4498);
    dlg.Filter = QStringLiteral("PDF (*.pdf)|*.pdf");
    dlg.FilterIndex = 1;
    dlg.InitDir = StartFolder(FileKind::Images);
    const QString log = QFileInfo(Data().DataFile.trimmed()).completeBaseName();
    dlg.FileName = (log.isEmpty() ? QStringLiteral("QL540") : log) + QStringLiteral("-exposure.pdf");
    dlg.Flags = 6;
    if (!dlg.ShowSave(this)) return;
    QString name = dlg.FileName;
    RememberFolder(FileKind::Images, name);
    if (!name.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) name += QStringLiteral(".pdf");
    try {
        WriteExposureReport(name, ChoiceOf(Prefs()));
    } catch (const Fault &f) {
        // The advice, then the system's cause.
        Host().MessBox(ResString(8) + QStringLiteral("\r\n") + f.description, {}, -1, -1);
    }
}

void frmExposure::PrintReport() {
    Remember();
    TrapVoid("PrintExposureReport", [this] { PrintExposureReport(ChoiceOf(Prefs())); });
}

QMdiSubWindow *ShowExposure() {
    if (!MainForm() || !Data().DataPresent) return nullptr;
    return AddView(new frmExposure, 18, QSize(900, 560));
}
}  // namespace fm
