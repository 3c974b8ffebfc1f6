#pragma once
// The application's printer and the road of a print: the system's print dialog, a
// preview of the pages as they will come out, then the printer, or a PDF file written by
// the safe writer.
#include <QPageSize>
#include <QString>
#include <functional>

class QPagedPaintDevice;
class QPrinter;
class QWidget;

namespace fm {
class PrinterPage;

// The printer of this run: the system's default at first, then whichever the user chose
// in the print dialog. With no printer on the system it prints to a PDF file.
QPrinter &CurrentPrinter();
// The page every print is laid out on: the size given, the orientation, 5 mm margins (no
// less than the printer's own).
void SetStandardLayout(QPagedPaintDevice &device, const QPageSize &size, bool landscape);
// Registers the system's print dialog for clsPrintDialog, unless one is registered already.
void EnsurePrinterUi();

// The document's name: the job's name in the printer's queue, and the PDF file offered.
void SetDocumentName(const QString &name);

// Draws every page of a document on a page that has begun.
using DrawPages = std::function<void(PrinterPage &)>;
// Shows the pages in a preview; "Print" sends them to the current printer. False when the
// user closed the preview or the printer could not start (the user has been told). Faults
// of `draw` reach the caller.
bool PreviewAndPrint(QWidget *parent, const DrawPages &draw);
// The same pages straight to the current printer (or its PDF file), with no preview.
bool PrintPages(const DrawPages &draw);
// An A4 PDF file of the pages, as the current printer's PDF output would hold them.
void PrintToPdf(const QString &file, bool landscape, const DrawPages &draw);
}  // namespace fm
