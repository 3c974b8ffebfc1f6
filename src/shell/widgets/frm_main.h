#pragma once
// The application's one top-level window: menus, toolbar, status bar, the area of the
// child windows, and the docked information panel. Every user command starts in
// tbrToolbar_ButtonClick; menu entries forward to it.
#include "core/host.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/dock_control.h"

#include <QMainWindow>
#include <array>
#include <functional>
#include <map>
#include <memory>

class QAction;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QToolBar;
class QToolButton;

namespace fm {

class frmInfo;
class frmWarnings;
class frmWait;

class frmMain : public QMainWindow, public UiHost {
    Q_OBJECT
public:
    frmMain();
    ~frmMain() override;

    QMdiArea *mdiArea;
    QToolBar *tbrToolbar;
    std::array<QAction *, 26> Buttons{};  // by number, 1 to 25; gaps are separators
    QToolButton *btnLoad;                   // button 2 with its drop-down
    QMenu *ButtonMenus;                      // the recent files of button 2
    QLabel *lblPanel1, *imgCommStatus, *lblCommStatus, *imgBattStatus, *lblBattStatus;
    QWidget *pctCommStatus, *pctBattStatus;
    CommonDialog dlgFile;
    DockControl DockControl_;
    frmInfo *Info;
    frmWarnings *Warnings;
    QMdiSubWindow *WarningsWindow;
    QMenu *mnuFile, *mnuMonitor, *mnuSubSubMonitorMenu, *mnuGraph, *mnuWindows, *mnuHelp;
    std::array<QAction *, 10> mnuSubFile{};
    std::array<QAction *, 8> mnuSubMonitor{};
    std::array<QAction *, 10> mnuSubSubMonitor{};
    std::array<QAction *, 4> mnuSubGraph{};
    std::array<QAction *, 5> mnuSubWindow{};
    std::array<QAction *, 4> mnuSubHelp{};

    void tbrToolbar_ButtonClick(int button);
    void tbrToolbar_ButtonMenuClick(int entry);
    void mnuSubWindow_Click(int index);
    void mnuSubSubMonitor_Click(int index);
    void OpenRequestedForms();
    int ButtonValue(int button) const;
    // Tiles the child windows one above the other, each the full width.
    void Arrange();

    // The views that later subsystems attach: buttons 13, 14, 15 and 25 open them.
    struct View {
        std::function<QMdiSubWindow *()> open;  // builds and shows the view
        std::function<bool()> isOpen;
        std::function<bool()> wanted;           // the option to open it after a load
    };
    std::map<int, View> Views;
    // Commands of later subsystems, by button number.
    std::map<int, std::function<void()>> Commands;

    // UiHost
    bool MessBox(const QString &text, const QString &title, int icon, int mode) override;
    bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) override;
    void SetPanelText(const QString &text) override;
    void SetButtonEnabled(int button, bool enabled) override;
    bool ButtonEnabled(int button) const override;
    void SetButtonValue(int button, int value) override;
    void UpdateInfo() override;
    void WarningsChanged() override;
    void ShowWarnings() override;
    void SetBusy(bool busy) override;
    void RecentFilesChanged() override;
    void WaitShow() override;
    void WaitText(const QString &text) override;
    void WaitAnimate(int step) override;
    void WaitHide() override;
    void WaitShare(int received, int total) override;
    double AskDate() override;
    void SetCommStatus(int image, const QString &text) override;
    void SetBattImage(int image) override;
    void DoEvents() override;

    // Before new data replaces an unsaved measurement: the question of the exit, and the
    // save dialog on yes. False when the user cancelled that dialog or the save failed.
    // The exit asks with the error cross it always had; new data asks with the warning sign.
    bool OfferToSave(int icon = 1);

signals:
    // The wait window has painted this share of a long reply.
    void WaitPainted(int received, int total);

protected:
    void closeEvent(QCloseEvent *e) override;

private:
    void SetUpToolbar();
    void SetUpMenus();
    void SetUpStatusBar();
    void ApplyLanguage();
    void FileDialogFor(int button);
    void LoadCommand();
    void SaveCommand();
    void ExportCommand();
    void InfoButton();
    void ToggleWarnings();
    void LinkCommand(int button);
    void CopyToolbarState(QMenu *menu);
    void ListChildWindows();

    frmWait *wait_ = nullptr;
    int busy_ = 0;
    bool closing_ = false;
};

// The main window while it exists, else nullptr.
frmMain *MainForm();

} // namespace fm
