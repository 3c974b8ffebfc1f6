#pragma once
// What the window-free logic asks of windows. frmMain answers it in the GUI,
// fluxmere-cli on the terminal, and tests replace it with a recorder that scripts
// the answers.
#include <QString>

namespace fm {

// Boxes that do not come from the language store (faults, start-up checks).
enum class SystemBoxKind { CriticalOk, CriticalYesNo, PlainOk };

class UiHost {
public:
    virtual ~UiHost() = default;

    // frmMessageBox. icon: 0 error, 1 warning, 2 information (-1 means 0).
    // mode: 0 yes/no, 1 OK alone, 2 OK/cancel (-1 means 1). True when OK/yes closed it.
    virtual bool MessBox(const QString &text, const QString &title, int icon, int mode) = 0;
    // True only for a "yes" on a yes/no box.
    virtual bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) = 0;

    // lblPanel1 of frmMain, repainted at once.
    virtual void SetPanelText(const QString &text) = 0;
    // Toolbar buttons of frmMain by number (1 to 25).
    virtual void SetButtonEnabled(int button, bool enabled) = 0;
    virtual bool ButtonEnabled(int button) const = 0;
    virtual void SetButtonValue(int button, int value) = 0;
    // The information panel rewrites itself from the shared state.
    virtual void UpdateInfo() = 0;
    // The list of findings was rebuilt; ShowWarnings shows its window without blocking.
    virtual void WarningsChanged() = 0;
    virtual void ShowWarnings() = 0;
    virtual void SetBusy(bool busy) = 0;
    // The recent files of the options changed: rebuild the drop-down of button 2.
    virtual void RecentFilesChanged() = 0;

    // frmWait: shown, moved on, closed by the transfers that use it. WaitAnimate moves
    // the block by `step` units, turning back at either end of the frame.
    virtual void WaitShow() = 0;
    virtual void WaitText(const QString &text) = 0;
    virtual void WaitAnimate(int step) = 0;
    virtual void WaitHide() = 0;
    // The share of a long reply received so far: `received` of `total` bytes, total 0
    // while the reply has not told its length yet. The wait window paints before this
    // returns, though the link goes on waiting without letting events run.
    virtual void WaitShare(int received, int total) = 0;
    // frmDate: asks for a start date; returns it as an OLE date.
    virtual double AskDate() = 0;

    // Link lamp (status image 3 to 6) and its text; battery image (0 to 2).
    virtual void SetCommStatus(int image, const QString &text) = 0;
    virtual void SetBattImage(int image) = 0;
    // Lets queued events run once (the one yield of long transfers).
    virtual void DoEvents() = 0;
};

// The share of a long reply in whole percent, 0 to 100, rounded down so that 100 means
// all of it; -1 while its length is not known.
inline int SharePercent(int received, int total) {
    if (total <= 0) return -1;
    return int(qBound(qint64(0), qint64(received) * 100 / total, qint64(100)));
}

// A host that shows nothing and answers every question with "no"; boxes go to stderr.
class QuietHost : public UiHost {
public:
    bool MessBox(const QString &text, const QString &title, int icon, int mode) override;
    bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) override;
    void SetPanelText(const QString &) override {}
    void SetButtonEnabled(int button, bool enabled) override;
    bool ButtonEnabled(int button) const override;
    void SetButtonValue(int, int) override {}
    void UpdateInfo() override {}
    void WarningsChanged() override {}
    void ShowWarnings() override {}
    void SetBusy(bool) override {}
    void RecentFilesChanged() override {}
    void WaitShow() override {}
    void WaitText(const QString &) override {}
    void WaitAnimate(int) override {}
    void WaitHide() override {}
    void WaitShare(int, int) override {}
    double AskDate() override;
    void SetCommStatus(int, const QString &) override {}
    void SetBattImage(int) override {}
    void DoEvents() override {}

private:
    unsigned buttonsEnabled_ = 0;
};

UiHost &Host();

// What every filler of the data set does once new data is in: the data buttons (3, 4, 13,
// 14, 15, 25) come on, and the findings show when the options ask for them.
void EnableDataButtons();
void ShowWarningsIfWanted();
// Installs the host; nullptr goes back to a QuietHost. The caller keeps ownership.
void SetHost(UiHost *host);

} // namespace fm
