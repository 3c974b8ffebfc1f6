#include "printing/widgets/print_job.h"

#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/safe_file.h"
#include "printing/print_dialog.h"
#include "printing/widgets/printer_page.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QScreen>
#include <QGuiApplication>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QToolBar>
#include <QVBoxLayout>
#include <memory>
#include <optional>

namespace fm {
namespace {
constexpr double kMarginMm = 5;

class QtPrinterUi : public PrinterUi {
public:
    bool ShowPrinter(clsPrintDialog &d) override {
        QPrinter &printer = CurrentPrinter();
        // A PDF file is offered under the document's name, in the folder of the last one.
        if (printer.outputFormat() == QPrinter::PdfFormat && !printer.docName().isEmpty()) {
            const QString last = printer.outputFileName();
            const QString dir = last.isEmpty() ? QDir::homePath() : QFileInfo(last).absolutePath();
            printer.setOutputFileName(QDir(dir).filePath(printer.docName() + QStringLiteral(".pdf")));
        }
        QPrintDialog dialog(&printer, QApplication::activeWindow());
        using O = QAbstractPrintDialog;
        // The system's raw print-to-file has no counterpart here; a PDF file is always offered.
        O::PrintDialogOptions options = O::PrintToFile | O::PrintShowPageSize | O::PrintCollateCopies;
        if (!(d.Flags & print_flags::NoSelection)) options |= O::PrintSelection;
        // The system's dialog offers "Pages from ... to" even without page numbers (its print
        // server would cut them out): the range comes back here instead, so that the preview,
        // a PDF file and the printer all give the same pages.
        options |= O::PrintPageRange;
        dialog.setOptions(options);
        if (d.Max() > 0) {
            dialog.setMinMax(std::max(d.Min(), 1), d.Max());
            printer.setFromTo(d.FromPage(), d.ToPage());
        } else {
            dialog.setMinMax(1, 32767);
            printer.setFromTo(0, 0);
        }
        dialog.setPrintRange((d.Flags & print_flags::PageNums) && d.Max() > 0 ? O::PageRange : O::AllPages);
        if (dialog.exec() != QDialog::Accepted) return false;
        d.Flags &= ~(print_flags::Selection | print_flags::PageNums);
        if (dialog.printRange() == O::Selection) d.Flags |= print_flags::Selection;
        if (dialog.printRange() == O::PageRange) d.Flags |= print_flags::PageNums;
        d.SetReturnedPages(printer.fromPage(), printer.toPage());
        return true;
    }

    bool SetOrientation(QObject *, bool landscape) override {
        QPrinter &printer = CurrentPrinter();
        if (printer.outputFormat() == QPrinter::NativeFormat && printer.printerName().isEmpty()) return false;
        printer.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
        printer.setDuplex(QPrinter::DuplexNone);
        return true;
    }
};

// The preview: the pages at the printer's size, zoom, and "Print" or "Cancel".
class PreviewDialog : public QDialog {
public:
    PreviewDialog(QPrinter *printer, QWidget *parent, const DrawPages &draw) : QDialog(parent) {
        setObjectName(QStringLiteral("frmPrintPreview"));
        setWindowTitle(ResString(4430));
        preview = new QPrintPreviewWidget(printer, this);
        preview->setObjectName(QStringLiteral("preview"));
        connect(preview, &QPrintPreviewWidget::paintRequested, this, [this, draw](QPrinter *p) {
            if (fault) return;
            PrinterPage page(p);
            if (!page.Begin()) return;
            try {
                draw(page);
            } catch (const Fault &f) {
                fault = f;  // handed to the caller once the preview is closed
                QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
            }
            page.EndDoc();
        });
        auto *bar = new QToolBar(this);
        bar->addAction(ResString(4434), preview, &QPrintPreviewWidget::fitToWidth);
        bar->addAction(ResString(4435), preview, &QPrintPreviewWidget::fitInView);
        bar->addAction(QStringLiteral("+"), preview, [this] { preview->zoomIn(); });
        bar->addAction(QStringLiteral("\u2212"), preview, [this] { preview->zoomOut(); });
        bar->addSeparator();
        bar->addAction(QStringLiteral("\u25c0"), preview, [this] { Go(-1); });
        pageLabel = new QLabel(bar);
        bar->addWidget(pageLabel);
        bar->addAction(QStringLiteral("\u25b6"), preview, [this] { Go(+1); });
        connect(preview, &QPrintPreviewWidget::previewChanged, this, &PreviewDialog::ShowPage);
        auto *buttons = new QDialogButtonBox(this);
        buttons->addButton(ResString(4431), QDialogButtonBox::AcceptRole)->setObjectName(QStringLiteral("btnPrint"));
        buttons->addButton(ResString(4002), QDialogButtonBox::RejectRole)->setObjectName(QStringLiteral("btnCancel"));
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        auto *lay = new QVBoxLayout(this);
        lay->addWidget(bar);
        lay->addWidget(preview, 1);
        lay->addWidget(buttons);
        // Room for a whole page, within the screen the window stands on.
        const QRect screen = (parent ? parent->screen() : QGuiApplication::primaryScreen())->availableGeometry();
        resize(std::min(760, screen.width() - 40), std::min(820, screen.height() - 60));
        preview->fitInView();
    }
    QPrintPreviewWidget *preview;
    QLabel *pageLabel;
    std::optional<Fault> fault;

private:
    void Go(int by) {
        preview->setCurrentPage(qBound(1, preview->currentPage() + by, preview->pageCount()));
        ShowPage();
    }
    void ShowPage() {
        pageLabel->setText(
            ResString(4433).arg(preview->currentPage()).arg(preview->pageCount()));
    }
};

// The pages into a PDF file, through the safe writer: a failed print keeps the old file.
void WritePdf(const QString &file, int resolution, const QString &title, const DrawPages &draw,
              const std::function<void(QPdfWriter &)> &layOut) {
    SafeFile::Render(file, [&](QIODevice &out) {
        QPdfWriter pdf(&out);
        pdf.setResolution(resolution);
        layOut(pdf);
        pdf.setCreator(FaultSource());
        pdf.setTitle(title);
        PrinterPage page(&pdf);
        if (!page.Begin()) return false;
        draw(page);
        return page.EndDoc();
    });
}

void NotAvailable(const QPrinter &printer) {
    const QString name = printer.outputFormat() == QPrinter::PdfFormat ? printer.outputFileName()
                                                                       : printer.printerName();
    Host().MessBox(ResString(4432).arg(name), {}, 0, 1);
}
}  // namespace

QPrinter &CurrentPrinter() {
    static QPrinter *printer = [] {
        auto *p = new QPrinter(QPrinter::HighResolution);
        SetStandardLayout(*p, p->pageLayout().pageSize(), false);
        return p;
    }();
    return *printer;
}

void SetStandardLayout(QPagedPaintDevice &device, const QPageSize &size, bool landscape) {
    const QMarginsF mm(kMarginMm, kMarginMm, kMarginMm, kMarginMm);
    QPageLayout layout(size, landscape ? QPageLayout::Landscape : QPageLayout::Portrait, mm,
                       QPageLayout::Millimeter);
    device.setPageLayout(layout);
    device.setPageMargins(mm, QPageLayout::Millimeter);  // held to the printer's minimum
}

void EnsurePrinterUi() {
    static QtPrinterUi ui;
    if (!CurrentPrinterUi()) SetPrinterUi(&ui);
}

bool PrintPages(const DrawPages &draw) {
    QPrinter &printer = CurrentPrinter();
    if (printer.outputFormat() == QPrinter::PdfFormat) {
        // The file comes through the safe writer: a failed print keeps the old one.
        const QString file = printer.outputFileName();
        if (file.isEmpty()) {
            NotAvailable(printer);
            return false;
        }
        WritePdf(file, printer.resolution(), printer.docName(), draw,
                 [&](QPdfWriter &pdf) { pdf.setPageLayout(printer.pageLayout()); });
        return true;
    }
    PrinterPage page(&printer);
    if (!page.Begin()) {
        NotAvailable(printer);
        return false;
    }
    draw(page);
    return page.EndDoc();
}

void SetDocumentName(const QString &name) {
    CurrentPrinter().setDocName(name);
}

bool PreviewAndPrint(QWidget *parent, const DrawPages &draw) {
    QPrinter &printer = CurrentPrinter();
    PreviewDialog preview(&printer, parent ? parent : QApplication::activeWindow(), draw);
    const bool go = preview.exec() == QDialog::Accepted;
    if (preview.fault) throw *preview.fault;
    return go && PrintPages(draw);
}

void PrintToPdf(const QString &file, bool landscape, const DrawPages &draw) {
    WritePdf(file, CurrentPrinter().resolution(), QString(), draw, [&](QPdfWriter &pdf) {
        SetStandardLayout(pdf, QPageSize(QPageSize::A4), landscape);
    });
}
}  // namespace fm
