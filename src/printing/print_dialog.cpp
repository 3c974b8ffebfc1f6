#include "printing/print_dialog.h"

#include "core/fault.h"

#include <algorithm>

namespace fm {
namespace {
PrinterUi *g_ui = nullptr;
}

void SetPrinterUi(PrinterUi *ui) {
    g_ui = ui;
}

PrinterUi *CurrentPrinterUi() {
    return g_ui;
}

void clsPrintDialog::SetPage(int which, int value) {
    // The dialog holds 16-bit page numbers.
    value = value < 1 ? 0 : std::min(value, 32767);
    page_[which] = value;
    for (int k = 0; k < which; ++k) page_[k] = std::min(page_[k], value);
    for (int k = which + 1; k < 4; ++k) page_[k] = std::max(page_[k], value);
}

bool clsPrintDialog::ShowPrinter() {
    if (!g_ui) return false;
    const bool ok = g_ui->ShowPrinter(*this);
    if (!ok && CancelError) Raise(32755, QStringLiteral("Cancel."));
    return ok;
}

bool clsPrintDialog::SetLandscape(QObject *form) {
    return g_ui && g_ui->SetOrientation(form, true);
}

bool clsPrintDialog::SetPortrait(QObject *form) {
    return g_ui && g_ui->SetOrientation(form, false);
}
}  // namespace fm
