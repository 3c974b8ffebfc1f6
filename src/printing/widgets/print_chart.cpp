#include "printing/widgets/print_chart.h"

#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/regional.h"
#include "printing/page_text.h"
#include "printing/print_dialog.h"
#include "printing/widgets/print_job.h"
#include "printing/widgets/printer_page.h"
#include "shell/data_list.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/source_view.h"

#include <QFileInfo>
#include <QMdiArea>
#include <QPrinter>
#include <algorithm>
#include <cmath>

namespace fm {
namespace {
constexpr int kTwipsPerScreenPixel = 15;
constexpr int64_t kPreviewPages = 300;

ChartControl *ChartOfKind(const QString &kind) {
    if (kind == QLatin1String("TE")) return frmGraphTe::Current() ? frmGraphTe::Current()->teeEvolution : nullptr;
    if (kind == QLatin1String("ST")) return frmGraphSt::Current() ? frmGraphSt::Current()->teeStatistics : nullptr;
    if (kind == QLatin1String("RF")) return frmGraphRf::Current() ? frmGraphRf::Current()->teeEvolution : nullptr;
    return nullptr;
}

// "sample-TE": the measurement's file and what prints, so that a PDF of each gets its own name.
void NameDocument(const QString &what) {
    const QString file = QFileInfo(Data().DataFile).completeBaseName();
    SetDocumentName((file.isEmpty() ? QStringLiteral("Fluxmere") : file) + QLatin1Char('-') + what);
}

// The legend is the page's, not the screen's: it goes again whatever the drawing did.
class LegendWhilePrinting {
public:
    LegendWhilePrinting(ChartControl *chart, bool on) : chart_(on ? chart : nullptr) {
        if (chart_) chart_->SetLegendVisible(true);
    }
    ~LegendWhilePrinting() {
        if (chart_) chart_->SetLegendVisible(false);
    }

private:
    ChartControl *chart_;
};
}  // namespace

QString ChartPrintTitle() {
    MeasurementData &d = Data();
    d.ShortID = d.ShortID.trimmed();
    d.LongID = d.LongID.trimmed();
    return ResString(4083) + QLatin1Char(' ') + d.ShortID + QStringLiteral(" - ") + d.LongID;
}

void PrintLine(PrinterPage &page, const QString &text, int alignment) {
    const double size = page.FontSize();
    FitFontSize(size, page.ScaleWidth(), [&](double s) { return page.SetFontSize(s); },
                [&] { return page.TextWidth(text); });
    page.CurrentX = LineStartX(alignment, page.ScaleWidth(), page.TextWidth(text));
    page.Print(text);
    page.SetFontSize(size);
}

void PrintHeader(PrinterPage &page, const QString &title) {
    page.SetFontBold(true);
    page.SetFontSize(12);
    page.CurrentX = 10;
    page.CurrentY = 10;
    PrintLine(page, title, 2);
    page.SetFontBold(false);
    page.SetFontSize(10);
    PrintLine(page, PrintSummaryLine(), 2);
}

void PrintFooter(PrinterPage &page) {
    const QString version = PrintVersionLine();
    const double y = page.ScaleHeight() - page.TextHeight();
    page.CurrentY = y;
    PrintLine(page, version, 0);
    page.CurrentY = y;
    PrintLine(page, PrintedOnLine(Now()), 1);
}

void DrawChartPage(PrinterPage &page, const QString &title, ChartControl *chart, bool legend) {
    PrintHeader(page, title);
    {
        LegendWhilePrinting shown(chart, legend);
        QRect rect = PrintChartRect(page.Landscape(), page.PixelWidth(), page.PixelHeight());
        // In landscape the rectangle's top lies under the heading: the chart starts below it.
        const int headingBottom = int(std::ceil(page.CurrentY * PrinterPage::kPixelsPerInch / 1440));
        rect.setTop(std::max(rect.top(), headingBottom));
        chart->DrawForPrint(page.Painter(), page.DeviceRect(rect),
                            QSize(kPrintChartWidth / kTwipsPerScreenPixel, kPrintChartHeight / kTwipsPerScreenPixel));
    }
    PrintFooter(page);
}

void DrawListPages(PrinterPage &page, const DataList &list, int64_t first, int64_t last, int64_t marked,
                   const QFont &font, int fromPage, int toPage, const std::function<void(int)> &onPage) {
    QFont bold = font;
    bold.setBold(true);
    page.SetFont(font);
    const double lineHeight = page.TextHeight();
    const double bottom = page.ScaleHeight();
    const auto wanted = [&](int n) { return fromPage <= 0 || (n >= fromPage && (toPage <= 0 || n <= toPage)); };
    int number = 1;        // the page the next line falls on
    bool drawn = false;    // whether a page has been drawn on yet
    double y = 0;
    QString text;
    for (int64_t line = std::max<int64_t>(first, 0); line <= last && line < list.LineCount(); ++line) {
        if (y + lineHeight > bottom && y > 0) {
            ++number;
            y = 0;
            if (toPage > 0 && number > toPage) break;
            if (drawn && wanted(number) && !page.NewPage())
                Raise(err::DeviceIO, QStringLiteral("The printer took no further page"));
            if (onPage && wanted(number)) onPage(number);
        }
        if (wanted(number)) {
            text.clear();
            list.AppendPaddedLine(line, text);
            page.SetFont(line == marked ? bold : font);
            page.CurrentX = 50;
            page.CurrentY = y;
            page.Print(text, line == marked ? QColor(255, 0, 0) : QColor(Qt::black));
            drawn = true;
        }
        y += lineHeight;
    }
    page.SetFont(font);
}

void PrintChart(const QString &title, const QString &kind) {
    frmMain *m = MainForm();
    if (!m || !m->mdiArea->activeSubWindow()) return;
    EnsurePrinterUi();
    NameDocument(kind);
    clsPrintDialog dialog;
    dialog.Flags = print_flags::HidePrintToFile | print_flags::PageNums;
    if (!dialog.ShowPrinter()) return;
    ChartControl *chart = ChartOfKind(kind);
    if (!chart) return;
    PreviewAndPrint(chart->window(), [&](PrinterPage &page) {
        DrawChartPage(page, title, chart, kind == QLatin1String("TE"));
    });
}

void PrintData() {
    TrapVoid("PrintData", [] {
        frmSource *source = frmSource::Current();
        if (!source || !source->txtSource->List()) return;
        SourceView *text = source->txtSource;
        EnsurePrinterUi();
        NameDocument(QStringLiteral("list"));
        clsPrintDialog dialog;
        const bool selected = text->SelectionStart() >= 0;
        dialog.Flags = print_flags::HidePrintToFile | print_flags::NoPageNums |
                       (selected ? 0 : print_flags::NoSelection);
        if (!dialog.ShowPrinter()) return;
        const bool selection = dialog.Flags & print_flags::Selection;
        const bool landscape = CurrentPrinter().pageLayout().orientation() == QPageLayout::Landscape;
        if (!(landscape ? dialog.SetLandscape(source) : dialog.SetPortrait(source))) {
            Host().MessBox(ResString(16), {}, -1, -1);
            return;
        }
        const DataList &list = *text->List();
        const int64_t first = selection ? text->SelectionStart() : 0;
        const int64_t last = selection ? text->SelectionEnd() : list.LineCount() - 1;
        const QFont font = text->font();
        const int64_t marked = text->MarkedLine();
        // The system's dialog offers pages from..to whatever the flags say: they are honoured.
        const bool range = dialog.Flags & print_flags::PageNums;
        const int from = range ? dialog.FromPage() : 0, to = range ? dialog.ToPage() : 0;
        const auto draw = [&](PrinterPage &page) { DrawListPages(page, list, first, last, marked, font, from, to); };
        // A preview holds every page in memory: a year's list goes to the printer without one.
        int64_t pages = PrinterPage::PagesFor(&CurrentPrinter(), font, last - first + 1);
        if (to > 0) pages = std::min<int64_t>(pages, to);
        if (from > 0) pages = std::max<int64_t>(0, pages - from + 1);
        if (pages <= kPreviewPages) {
            PreviewAndPrint(source->window(), draw);
            return;
        }
        if (!Host().MessBox(ResString(4436).arg(pages), {}, 1, 0)) return;
        Host().DoEvents();  // the question goes before the long wait begins
        Host().SetBusy(true);
        struct NotBusy {
            ~NotBusy() {
                Host().SetPanelText(QString());
                Host().SetBusy(false);
            }
        } notBusy;
        // The window does not take clicks while the pages are drawn: the panel counts them.
        const int firstPage = std::max(from, 1);
        PrintPages([&](PrinterPage &page) {
            DrawListPages(page, list, first, last, marked, font, from, to, [&](int n) {
                if (n % 50 == 0) Host().SetPanelText(ResString(4437).arg(n - firstPage + 1).arg(pages));
            });
        });
    });
}
}  // namespace fm
