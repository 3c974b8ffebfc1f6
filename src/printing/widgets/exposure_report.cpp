#include "printing/widgets/exposure_report.h"

#include "printing/widgets/print_job.h"
#include "printing/widgets/printer_page.h"

namespace fm {
void DrawExposureReport(PrinterPage &page, const ExposureChoice &choice) {
    (void)choice;
    page.Print(QStringLiteral("Exposure"));
}

void PrintExposureReport(const ExposureChoice &choice) {
    PreviewAndPrint(nullptr, [&](PrinterPage &page) { DrawExposureReport(page, choice); });
}

void WriteExposureReport(const QString &pdf, const ExposureChoice &choice) {
    PrintToPdf(pdf, false, [&](PrinterPage &page) { DrawExposureReport(page, choice); });
}
}  // namespace fm
