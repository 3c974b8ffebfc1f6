#pragma once
// The exposure report: A4 pages laid out once and drawn on any page device, so the PDF,
// the preview and a printer give the same pages.
#include "analysis/exposure.h"

#include <QString>

class QWidget;

namespace fm {
class PrinterPage;

// Every page of the report of the loaded measurement, judged against choice.references
// at the threshold of the options (Soglia).
void DrawExposureReport(PrinterPage &page, const ExposureChoice &choice);
// The road of every print: the print dialog, the preview, the printer or a PDF file.
void PrintExposureReport(const ExposureChoice &choice);
// The report as an A4 PDF file, written by the safe writer. Faults reach the caller.
void WriteExposureReport(const QString &pdf, const ExposureChoice &choice);

}  // namespace fm
