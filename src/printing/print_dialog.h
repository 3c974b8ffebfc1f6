#pragma once
// The print dialog as the printing code sees it: dialog flags in and out, the page
// numbers with their order kept, and the choice of printer. What the dialog looks like
// is the windows' business: they register the one that runs (PrinterUi).
#include <QtGlobal>

class QObject;

namespace fm {
namespace print_flags {
inline constexpr quint32 Selection = 0x1;     // out: the user chose the selection
inline constexpr quint32 PageNums = 0x2;      // page numbers selected
inline constexpr quint32 NoSelection = 0x4;   // no selection choice
inline constexpr quint32 NoPageNums = 0x8;    // no page numbers
inline constexpr quint32 HidePrintToFile = 0x80000;
}  // namespace print_flags

class clsPrintDialog;

// What the windows do for the printing code. Registered once by the application (and by
// tests, which script the answers).
class PrinterUi {
public:
    virtual ~PrinterUi() = default;
    // Shows the system's print dialog on the current printer; on confirmation copies the
    // flags and pages back and makes the chosen printer current.
    virtual bool ShowPrinter(clsPrintDialog &dialog) = 0;
    // Puts the orientation into the page layout held for the current printer, with
    // simplex duplex; false when there is no printer to hold it.
    virtual bool SetOrientation(QObject *form, bool landscape) = 0;
};
void SetPrinterUi(PrinterUi *ui);
PrinterUi *CurrentPrinterUi();

class clsPrintDialog {
public:
    quint32 Flags = 0;
    // The application leaves it false: a cancel then gives false instead of fault 32755.
    bool CancelError = false;

    // Below 1 a value becomes 0; the others follow so that Min <= FromPage <= ToPage <= Max.
    int Min() const { return page_[0]; }
    int FromPage() const { return page_[1]; }
    int ToPage() const { return page_[2]; }
    int Max() const { return page_[3]; }
    void SetMin(int v) { SetPage(0, v); }
    void SetFromPage(int v) { SetPage(1, v); }
    void SetToPage(int v) { SetPage(2, v); }
    void SetMax(int v) { SetPage(3, v); }
    // What the dialog hands back; no pulling, as the platform's dialog keeps its own order.
    void SetReturnedPages(int from, int to) {
        page_[1] = from;
        page_[2] = to;
    }

    // True when the user confirmed the dialog. Without a registered dialog: false.
    bool ShowPrinter();
    bool SetLandscape(QObject *form);
    bool SetPortrait(QObject *form);

private:
    void SetPage(int which, int value);
    int page_[4] = {0, 0, 0, 0};  // Min, FromPage, ToPage, Max; 16-bit in the dialog
};
}  // namespace fm
