#include "shell/widgets/frm_source.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"
#include "shell/data_list.h"
#include "shell/file_folders.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/source_view.h"
#include "shell/widgets/view_window.h"
#include "printing/widgets/print_chart.h"
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_te.h"

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QToolBar>
#include <QVBoxLayout>

namespace fm {
namespace {
const char kByTime[] = "Lista dei dati ordinati cronologicamente";
const char kByValue[] = "Lista dei dati ordinati per valore di risultante magnetica";
frmSource *g_open = nullptr;
} // namespace

frmSource *frmSource::Current() {
    return g_open;
}

frmSource::frmSource(QWidget *parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmSource"));
    SetTag(this, 4074);
    lblOrder = new QLabel(QString::fromLatin1(kByTime), this);
    tbrGraphSrc = new QToolBar(this);
    tbrGraphSrc->setIconSize(QSize(18, 18));
    btnSave = tbrGraphSrc->addAction(ToolbarImage(2), ResString(4147), this, &frmSource::SaveList);
    btnPrint = tbrGraphSrc->addAction(ToolbarImage(4), ResString(4148), this, &PrintData);
    btnClose = tbrGraphSrc->addAction(MessageIcon(0), ResString(4149), this, [this] {
        if (parentWidget()) parentWidget()->close();
    });
    tbrGraphSrc->addSeparator();
    btnOrder = tbrGraphSrc->addAction(ToolbarImage(10), ResString(4174), this, &frmSource::SwitchOrder);
    btnOrder->setEnabled(DataList::ValueOrderAvailable());
    txtSource = new SourceView(this);
    auto *top = new QHBoxLayout;
    top->addWidget(lblOrder, 1);
    top->addWidget(tbrGraphSrc);
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(4, 2, 4, 4);
    lay->addLayout(top);
    lay->addWidget(txtSource, 1);
    SetUpForm(this);
    connect(txtSource, &SourceView::currentLineChanged, this, &frmSource::GetChartPoint);
    g_open = this;
    Shared().SourceOpen = true;
}

frmSource::~frmSource() {
    Unload();
}

// The window is deleted later than it closes; by then a new list may stand open.
void frmSource::Unload() {
    if (g_open != this) return;
    g_open = nullptr;
    Shared().SourceOpen = false;
}

void frmSource::closeEvent(QCloseEvent *e) {
    Unload();
    QWidget::closeEvent(e);
}

void frmSource::ViewDataSource(bool chronological) {
    TrapVoid("ViewDataSource", [&] {
        if (!Data().DataPresent) return;
        auto list = std::make_unique<DataList>(chronological);
        const int64_t median = list->MedianLine();
        txtSource->SetList(std::move(list));
        txtSource->SetMarkedLine(median);
    });
}

void frmSource::SwitchOrder() {
    ViewDataSource(ByValue);
    lblOrder->setText(QString::fromLatin1(ByValue ? kByTime : kByValue));
    ByValue = !ByValue;
}

void frmSource::SaveList() {
    frmMain *m = MainForm();
    CommonDialog local;
    CommonDialog &dlg = m ? m->dlgFile : local;
    dlg = CommonDialog{};
    dlg.CancelError = true;
    dlg.DialogTitle = ResString(4084);
    dlg.Filter = ResString(4085) + QStringLiteral(" (*.txt)|*.txt|") + ResString(3002) + QStringLiteral(" (*.*)|*.*");
    dlg.FilterIndex = 1;
    dlg.InitDir = StartFolder(FileKind::Tables);
    dlg.Flags = 6;
    if (!dlg.ShowSave(this) || !txtSource->List()) return;
    RememberFolder(FileKind::Tables, dlg.FileName);
    SalvaDati(*txtSource->List(), dlg.FileName);
}

void frmSource::GetSourceRow(int32_t point) {
    TrapVoid("GetSourceRow", [&] {
        frmSource *list = Current();
        if (list && !list->IsChronological()) return;
        // The RF chart takes the cross while it stands open.
        if (frmGraphRf *rf = frmGraphRf::Current()) {
            if (!rf->CrossOnPoint(point)) return;
        } else if (frmGraphTe *chart = frmGraphTe::Current()) {
            if (!chart->CrossOnPoint(point)) return;
        }
        if (list && list->txtSource->List())
            list->txtSource->SelectLine(list->txtSource->List()->LineOfSample(point + 1));
    });
}

void frmSource::GetChartPoint(int64_t line) {
    TrapVoid("GetChartPoint", [&] {
        if (!IsChronological() || !txtSource->List()) return;
        // A heading line or the blank line gives sample 0, which hides the cross.
        const int32_t sample = txtSource->List()->SampleOfLine(line);
        if (frmGraphTe *chart = frmGraphTe::Current()) chart->GetChartPoint(sample);
        if (frmGraphRf *rf = frmGraphRf::Current()) rf->GetChartPoint(sample);
    });
}

void frmSource::showEvent(QShowEvent *e) {
    QString caption = ResString(4074);
    if (!Data().DataFile.isEmpty()) caption += QStringLiteral(" [") + Data().DataFile + QLatin1Char(']');
    setWindowTitle(caption);
    QWidget::showEvent(e);
}

QMdiSubWindow *ViewDataSource(bool chronological) {
    frmMain *m = MainForm();
    if (!m || !Data().DataPresent) return nullptr;
    auto *form = new frmSource;
    form->ViewDataSource(chronological);
    return AddView(form, 13, QSize(640, 420));
}
} // namespace fm
