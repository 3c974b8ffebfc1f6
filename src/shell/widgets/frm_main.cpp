#include "shell/widgets/frm_main.h"

#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/options.h"
#include "core/widgets/icons.h"
#include "core/widgets/set_up_form.h"
#include "files/file_names.h"
#include "files/log_file.h"
#include "files/table_export.h"
#include "acquisition/surveyor.h"
#include "acquisition/upload.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/transaction.h"
#include "monitor/widgets/frm_id_code.h"
#include "monitor/widgets/frm_monitor.h"
#include "shell/file_folders.h"
#include "shell/widgets/frm_about.h"
#include "shell/widgets/edit_keys.h"
#include "shell/widgets/frm_date.h"
#include "shell/widgets/frm_help.h"
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_settings.h"
#include "shell/widgets/frm_source.h"
#include "charts/widgets/frm_exposure.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "realtime/widgets/frm_view.h"
#include "shell/widgets/frm_wait.h"
#include "shell/widgets/frm_warnings.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/view_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

namespace fm {
namespace {
frmMain *g_main = nullptr;

struct ButtonDef {
    int image;     // 0 for a gap or separator
    int tooltip;   // language string
    bool enabled;  // at start
};
// Buttons 1 to 25 by number; 1 is a separator, images 0 are gaps.
const ButtonDef kButtons[26] = {
    {}, {0, 0, true}, {1, 4126, true}, {2, 4127, false}, {4, 4128, false}, {0, 0, true},
    {16, 4129, true}, {3, 4130, true}, {0, 0, true}, {6, 4131, true}, {7, 4132, true},
    {8, 4133, true}, {0, 0, true}, {9, 4134, false}, {10, 4135, false}, {13, 4136, false},
    {0, 0, true}, {5, 4137, true}, {0, 0, true}, {17, 4156, true}, {11, 4138, true},
    {15, 4139, true}, {0, 0, true}, {14, 4140, true}, {12, 4141, true}, {18, 4472, false}};
// The order on the toolbar: the exposure, added last, stands with the other views.
const int kButtonOrder[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                            14, 15, 25, 16, 17, 18, 19, 20, 21, 22, 23, 24};

const char *const kInfoKey = "frmInfo";

QString LogFilter() {
    return QStringLiteral("Fluxmere Log File (*.log)|*.log|") + ResString(3002) + QStringLiteral(" (*.*)|*.*");
}
} // namespace

frmMain *MainForm() { return g_main; }

frmMain::frmMain() : DockControl_(this) {
    g_main = this;
    setObjectName(QStringLiteral("frmMain"));
    qApp->installEventFilter(new EditKeys(this));
    setWindowTitle(QStringLiteral("Fluxmere"));
    SetTag(this, 4037);
    mdiArea = new QMdiArea(this);
    mdiArea->setObjectName(QStringLiteral("mdiArea"));
    mdiArea->setBackground(QColor(0x8a, 0x94, 0xa0));
    // A view that cannot be narrower than its controls may be wider than the area
    // (a small screen, a large text scale): the area scrolls to it.
    mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(mdiArea);
    // Four fifths of the screen's free area, centred: any fixed size is cramped on a
    // large screen and runs off a small one.
    if (const QScreen *sc = screen()) {
        const QRect free = sc->availableGeometry();
        setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, free.size() * 0.8, free));
    }

    SetUpToolbar();
    SetUpMenus();
    SetUpStatusBar();
    SetUpForm(this);

    Info = new frmInfo;
    DockControl_.DockAdd(Info, 0, 4);
    DockControl_.DockFlagA(QLatin1String(kInfoKey), false);
    DockControl_.DockFlagB(QLatin1String(kInfoKey), false);
    DockControl_.DockSizeA = DockControl_.DockSizeB = 2355;
    // Closing the panel's frame only hides it; button 20 brings it back.
    connect(DockControl_.Dock(QLatin1String(kInfoKey)), &QDockWidget::visibilityChanged, this,
            [this](bool visible) {
                if (!visible && DockControl_.DockState(QLatin1String(kInfoKey)) == 0) {
                    SetButtonValue(20, 0);
                    mnuSubWindow[0]->setChecked(false);
                }
            });
    UpdateInfo();
    mnuSubWindow[1]->setChecked(Options().InfoDocked);
    if (Options().InfoShown) mnuSubWindow_Click(0);

    Warnings = new frmWarnings;
    WarningsWindow = mdiArea->addSubWindow(Warnings);
    WarningsWindow->setWindowIcon(ToolbarImage(17));
    WarningsWindow->hide();
    connect(Warnings, &frmWarnings::hiddenByUser, this, [this] { SetButtonValue(19, 0); });
    Warnings->Refresh();

    ApplyLanguage();
    Views[13] = {[] { return ShowGraphTe(); }, [] { return Shared().GraphTeOpen; },
                 [] { return bool(Options().OpenGraphTe); }};
    Views[14] = {[] { return ShowGraphSt(); }, [] { return Shared().GraphStOpen; },
                 [] { return bool(Options().OpenGraphSt); }};
    Views[15] = {[] { return ViewDataSource(true); }, [] { return Shared().SourceOpen; },
                 [] { return bool(Options().OpenSource); }};
    // No option opens it after a load: the options record has no room for one.
    Views[25] = {[] { return ShowExposure(); }, [] { return frmExposure::Current() != nullptr; },
                 [] { return false; }};
}

frmMain::~frmMain() {
    if (g_main == this) g_main = nullptr;
    // The child windows go after the members: their last signals must not reach us.
    if (QDockWidget *dock = DockControl_.Dock(QLatin1String(kInfoKey))) dock->disconnect(this);
    if (Warnings) Warnings->disconnect(this);
}

void frmMain::SetUpToolbar() {
    tbrToolbar = addToolBar(QStringLiteral("tbrToolbar"));
    tbrToolbar->setObjectName(QStringLiteral("tbrToolbar"));
    tbrToolbar->setMovable(false);
    tbrToolbar->setIconSize(QSize(24, 24));
    ButtonMenus = new QMenu(this);
    for (int b : kButtonOrder) {
        const ButtonDef &def = kButtons[b];
        if (def.image == 0) {
            Buttons[size_t(b)] = tbrToolbar->addSeparator();
            continue;
        }
        auto *a = new QAction(ToolbarImage(def.image), QString(), this);
        a->setObjectName(QStringLiteral("Button%1").arg(b));
        a->setEnabled(def.enabled);
        a->setCheckable(b == 19 || b == 20);
        if (b == 2) {
            btnLoad = new QToolButton(tbrToolbar);
            btnLoad->setDefaultAction(a);
            btnLoad->setMenu(ButtonMenus);
            btnLoad->setPopupMode(QToolButton::MenuButtonPopup);
            tbrToolbar->addWidget(btnLoad);
        } else {
            tbrToolbar->addAction(a);
        }
        // A checkable button's own toggle is undone: its handler decides the pressed look.
        connect(a, &QAction::triggered, this, [this, b, a] {
            if (a->isCheckable()) a->setChecked(!a->isChecked());
            tbrToolbar_ButtonClick(b);
        });
        Buttons[size_t(b)] = a;
    }
    RecentFilesChanged();
}

void frmMain::SetUpMenus() {
    auto item = [this](QMenu *menu, const char *caption, int tag, const QKeySequence &key,
                       std::function<void()> run) {
        auto *a = menu->addAction(QString::fromUtf8(caption));
        if (tag) a->setProperty("Tag", tag);
        if (!key.isEmpty()) a->setShortcut(key);
        if (run) connect(a, &QAction::triggered, this, std::move(run));
        return a;
    };
    auto forward = [this](int b) { return [this, b] { tbrToolbar_ButtonClick(b); }; };
    auto sep = [](QMenu *m) { return m->addSeparator(); };

    mnuFile = menuBar()->addMenu(QStringLiteral("&File"));
    mnuFile->setProperty("Tag", 4100);
    mnuSubFile[0] = item(mnuFile, "&Load Data File...", 4101, Qt::CTRL | Qt::Key_L, forward(2));
    mnuSubFile[1] = item(mnuFile, "&Save Data File...", 4102, Qt::CTRL | Qt::Key_S, forward(3));
    mnuSubFile[2] = sep(mnuFile);
    mnuSubFile[3] = item(mnuFile, "&Upload data...", 4103, Qt::CTRL | Qt::Key_U, forward(7));
    mnuSubFile[4] = item(mnuFile, "&Import Data from Surveyr", 55, {}, [this] {
        TrapVoid("mnuSubFile_Click", [this] {
            if (OfferToSave() && DownloadSurveyorData()) OpenRequestedForms();
        });
    });
    mnuSubFile[5] = item(mnuFile, "&Export data...", 4104, Qt::CTRL | Qt::Key_E, forward(4));
    mnuSubFile[6] = sep(mnuFile);
    mnuSubFile[7] = item(mnuFile, "&Preferences...", 4105, Qt::CTRL | Qt::Key_P, forward(17));
    mnuSubFile[8] = sep(mnuFile);
    mnuSubFile[9] = item(mnuFile, "E&xit", 4106, Qt::CTRL | Qt::Key_X, [this] {
        ShutDown(this);
        closing_ = true;
        close();
        QCoreApplication::exit(0);
    });
    connect(mnuFile, &QMenu::aboutToShow, this, [this] { CopyToolbarState(mnuFile); });

    mnuMonitor = menuBar()->addMenu(QStringLiteral("&Monitor"));
    mnuMonitor->setProperty("Tag", 4107);
    mnuSubMonitor[0] = item(mnuMonitor, "&Direct Monitor...", 4108, Qt::CTRL | Qt::Key_D, forward(9));
    mnuSubMonitor[1] = sep(mnuMonitor);
    mnuSubMonitor[2] = item(mnuMonitor, "&Read Monitor Settings", 4109, {}, nullptr);
    mnuSubMonitor[2]->setVisible(false);
    mnuSubMonitor[3] = item(mnuMonitor, "&Set Monitor Settings...", 4110, Qt::CTRL | Qt::Key_I, forward(10));
    mnuSubMonitor[4] = item(mnuMonitor, "Set &ID Code...", 4111, Qt::CTRL | Qt::Key_C, forward(11));
    mnuSubMonitor[5] = sep(mnuMonitor);
    mnuSubSubMonitorMenu = mnuMonitor->addMenu(QStringLiteral("S&elect Com Port"));
    mnuSubSubMonitorMenu->setProperty("Tag", 4112);
    mnuSubMonitor[6] = mnuSubSubMonitorMenu->menuAction();
    for (int i = 0; i < 10; ++i) {
        auto *a = mnuSubSubMonitorMenu->addAction(QStringLiteral("Com %1").arg(i + 1));
        a->setCheckable(true);
        connect(a, &QAction::triggered, this, [this, i, a] {
            a->setChecked(!a->isChecked());
            mnuSubSubMonitor_Click(i);
        });
        mnuSubSubMonitor[size_t(i)] = a;
    }
    connect(mnuSubSubMonitorMenu, &QMenu::aboutToShow, this, [this] {
        for (int i = 0; i < 10; ++i) {
            const QString dev = SerialPort::DevicePath(i + 1);
            mnuSubSubMonitor[size_t(i)]->setStatusTip(dev.isEmpty() ? ResString(5) : dev);
            mnuSubSubMonitor[size_t(i)]->setToolTip(mnuSubSubMonitor[size_t(i)]->statusTip());
        }
    });
    mnuSubSubMonitorMenu->setToolTipsVisible(true);
    mnuSubMonitor[7] = item(mnuMonitor, "Start &Communication", 4113, Qt::CTRL | Qt::Key_G, forward(6));
    connect(mnuMonitor, &QMenu::aboutToShow, this, [this] { CopyToolbarState(mnuMonitor); });

    mnuGraph = menuBar()->addMenu(QStringLiteral("&Graphics"));
    mnuGraph->setProperty("Tag", 4114);
    mnuSubGraph[0] = item(mnuGraph, "Show &Time Evolution...", 4115, Qt::Key_F4, forward(13));
    mnuSubGraph[1] = item(mnuGraph, "Show S&tatistics...", 4116, Qt::Key_F5, forward(14));
    mnuSubGraph[2] = item(mnuGraph, "Show &Data Source...", 4117, Qt::Key_F6, forward(15));
    mnuSubGraph[3] = item(mnuGraph, "Show &Exposure...", 4471, Qt::Key_F7, forward(25));
    connect(mnuGraph, &QMenu::aboutToShow, this, [this] { CopyToolbarState(mnuGraph); });

    mnuWindows = menuBar()->addMenu(QStringLiteral("&Windows"));
    mnuWindows->setProperty("Tag", 4118);
    mnuSubWindow[0] = item(mnuWindows, "Show &Info Window", 4119, Qt::CTRL | Qt::Key_V, [this] { mnuSubWindow_Click(0); });
    mnuSubWindow[1] = item(mnuWindows, "&Dock Info Window", 4120, Qt::CTRL | Qt::Key_A, [this] { mnuSubWindow_Click(1); });
    mnuSubWindow[2] = item(mnuWindows, "&Show Data Analisys Window", 4155, Qt::CTRL | Qt::Key_W, [this] { mnuSubWindow_Click(2); });
    mnuSubWindow[3] = sep(mnuWindows);
    mnuSubWindow[4] = item(mnuWindows, "&Arrange", 4121, {}, [this] { mnuSubWindow_Click(4); });
    for (int i : {0, 1, 2}) mnuSubWindow[size_t(i)]->setCheckable(true);
    connect(mnuWindows, &QMenu::aboutToShow, this, [this] { ListChildWindows(); });

    mnuHelp = menuBar()->addMenu(QStringLiteral("&Help"));
    mnuHelp->setProperty("Tag", 4122);
    mnuSubHelp[0] = item(mnuHelp, "&Index...", 4123, Qt::Key_F1, forward(24));
    mnuSubHelp[1] = item(mnuHelp, "&Search in help...", 4124, Qt::Key_F2, forward(23));
    mnuSubHelp[2] = sep(mnuHelp);
    mnuSubHelp[3] = item(mnuHelp, "A&bout...", 4125, Qt::Key_F3, [this] {
        frmAbout about(this);
        about.exec();
    });
}

void frmMain::SetUpStatusBar() {
    auto panel = [this](QLabel *&img, QLabel *&text, const char *name) {
        auto *w = new QWidget(this);
        w->setObjectName(QLatin1String(name));
        auto *lay = new QHBoxLayout(w);
        lay->setContentsMargins(4, 0, 4, 0);
        img = new QLabel(w);
        text = new QLabel(w);
        lay->addWidget(img);
        lay->addWidget(text);
        return w;
    };
    lblPanel1 = new QLabel(this);
    lblPanel1->setObjectName(QStringLiteral("lblPanel1"));
    statusBar()->addWidget(lblPanel1, 1);
    pctCommStatus = panel(imgCommStatus, lblCommStatus, "pctCommStatus");
    lblCommStatus->setObjectName(QStringLiteral("lblCommStatus"));
    pctBattStatus = panel(imgBattStatus, lblBattStatus, "pctBattStatus");
    lblCommStatus->setMinimumWidth(170);
    lblBattStatus->setMinimumWidth(90);
    statusBar()->addPermanentWidget(pctCommStatus);
    statusBar()->addPermanentWidget(pctBattStatus);
    imgCommStatus->setPixmap(StatusImage(3));
    imgBattStatus->setPixmap(StatusImage(0));
}

// Menu captions and tooltips come from the language store, as do the panel texts.
void frmMain::ApplyLanguage() {
    const auto caption = [](QAction *a) {
        if (!a) return;
        const int tag = a->property("Tag").toInt();
        if (tag) a->setText(ResString(tag));
    };
    for (QMenu *m : {mnuFile, mnuMonitor, mnuGraph, mnuWindows, mnuHelp}) m->setTitle(ResString(m->property("Tag").toInt()));
    mnuSubSubMonitorMenu->setTitle(ResString(4112));
    for (auto *a : mnuSubFile) caption(a);
    for (auto *a : mnuSubMonitor) caption(a);
    for (auto *a : mnuSubGraph) caption(a);
    for (auto *a : mnuSubWindow) caption(a);
    for (auto *a : mnuSubHelp) caption(a);
    mnuSubMonitor[2]->setVisible(false);
    for (int b = 2; b <= 25; ++b)
        if (kButtons[b].tooltip) Buttons[size_t(b)]->setToolTip(ResString(kButtons[b].tooltip));
    lblBattStatus->setText(ResString(5));
    lblCommStatus->setText(ResString(5));
    lblPanel1->clear();
}

void frmMain::CopyToolbarState(QMenu *menu) {
    const auto copy = [this](QAction *a, int b) { a->setEnabled(ButtonEnabled(b)); };
    if (menu == mnuFile) {
        copy(mnuSubFile[0], 2);
        copy(mnuSubFile[1], 3);
        copy(mnuSubFile[3], 7);
        copy(mnuSubFile[5], 4);
        copy(mnuSubFile[7], 17);
    } else if (menu == mnuMonitor) {
        copy(mnuSubMonitor[0], 9);
        copy(mnuSubMonitor[3], 10);
        copy(mnuSubMonitor[4], 11);
        copy(mnuSubMonitor[7], 6);
    } else if (menu == mnuGraph) {
        copy(mnuSubGraph[0], 13);
        copy(mnuSubGraph[1], 14);
        copy(mnuSubGraph[2], 15);
        copy(mnuSubGraph[3], 25);
    }
}

void frmMain::ListChildWindows() {
    const int state = DockControl_.DockState(QLatin1String(kInfoKey));
    mnuSubWindow[0]->setChecked(state != 0);
    mnuSubWindow[1]->setChecked(state == 1);
    mnuSubWindow[2]->setChecked(WarningsWindow->isVisible());
    // The open child windows, below the entries.
    const auto actions = mnuWindows->actions();
    for (QAction *a : actions)
        if (a->property("childWindow").toBool()) mnuWindows->removeAction(a), a->deleteLater();
    bool first = true;
    for (QMdiSubWindow *w : mdiArea->subWindowList()) {
        if (!w->isVisible()) continue;
        if (first) {
            mnuWindows->addSeparator()->setProperty("childWindow", true);
            first = false;
        }
        QAction *a = mnuWindows->addAction(w->windowTitle());
        a->setProperty("childWindow", true);
        a->setCheckable(true);
        a->setChecked(w == mdiArea->activeSubWindow());
        connect(a, &QAction::triggered, this, [this, w] { mdiArea->setActiveSubWindow(w); });
    }
}

int frmMain::ButtonValue(int button) const {
    const QAction *a = button >= 1 && button <= 25 ? Buttons[size_t(button)] : nullptr;
    return a && a->isChecked() ? 1 : 0;
}

void frmMain::FileDialogFor(int button) {
    dlgFile = CommonDialog{};
    dlgFile.CancelError = true;
    dlgFile.FilterIndex = 0;
    const QString last = Options().LastPath.trimmed();
    dlgFile.InitDir = StartFolder(button == 4 ? FileKind::Tables : FileKind::Logs);
    const QString file = SplitFileName(last, true);
    dlgFile.FileName = !file.isEmpty() && QFileInfo(last).isFile() ? file : QString();
    if (button == 2) {
        dlgFile.DialogTitle = ResString(3001);
        dlgFile.Filter = LogFilter();
        dlgFile.Flags = 4100;
    } else if (button == 3) {
        dlgFile.DialogTitle = ResString(3003);
        dlgFile.Filter = LogFilter();
        dlgFile.Flags = 6;
    } else {
        dlgFile.DialogTitle = ResString(3004);
        dlgFile.Filter = ResString(3005) + QStringLiteral(" (*.csv)|*.csv|") + ResString(3006) +
                         QStringLiteral(" (*.tab)|*.tab");
        dlgFile.Flags = 6;
    }
}

bool frmMain::OfferToSave(int icon) {
    const MeasurementData &d = Data();
    if (!d.DataPresent || d.DataSaved || !MessBox(ResString(31), {}, icon, 0)) return true;
    FileDialogFor(3);
    if (!dlgFile.ShowSave(this)) return false;
    Options().LastPath = OptionText(SplitFileName(dlgFile.FileName, false));
    if (SaveFile(dlgFile.FileName)) return true;
    MessBox(ResString(8), {}, -1, -1);
    return false;
}

void frmMain::LoadCommand() {
    if (!OfferToSave()) return;
    FileDialogFor(2);
    if (!dlgFile.ShowOpen(this)) return;
    const QString name = dlgFile.FileName;
    Options().LastPath = OptionText(SplitFileName(name, false));
    if (!LoadFile(name)) {
        MessBox(ResString(7), {}, -1, -1);
        return;
    }
    SaveMRUFile(name);
    OpenRequestedForms();
}

void frmMain::SaveCommand() {
    FileDialogFor(3);
    if (!dlgFile.ShowSave(this)) return;
    const QString name = dlgFile.FileName;
    Options().LastPath = OptionText(SplitFileName(name, false));
    if (!SaveFile(name)) MessBox(ResString(8), {}, -1, -1);
    UpdateInfo();
}

// The filter in force chooses the table, whatever extension was typed.
void frmMain::ExportCommand() {
    FileDialogFor(4);
    if (!dlgFile.ShowSave(this)) return;
    const QString name = dlgFile.FileName;
    RememberFolder(FileKind::Tables, name);  // tables keep their own folder; LastPath is the logs'
    if (!SaveTable(name, dlgFile.FilterIndex)) MessBox(ResString(8), {}, -1, -1);
}

void frmMain::tbrToolbar_ButtonClick(int button) {
    TrapVoid("tbrToolbar_ButtonClick", [&] {
        switch (button) {
        case 2: LoadCommand(); return;
        case 3: SaveCommand(); return;
        case 4: ExportCommand(); return;
        case 9: ShowRealTimeView(); return;
        case 13:
        case 14:
        case 15:
        case 25: {
            const auto it = Views.find(button);
            if (it == Views.end()) return;
            if (it->second.isOpen && it->second.isOpen()) {
                // Already open: bring it forward, make no second window.
                for (QMdiSubWindow *w : mdiArea->subWindowList())
                    if (w->property("viewButton").toInt() == button) mdiArea->setActiveSubWindow(w);
                return;
            }
            if (QMdiSubWindow *w = it->second.open()) w->setProperty("viewButton", button);
            return;
        }
        case 6:
        case 7:
        case 10:
        case 11: LinkCommand(button); return;
        case 17: {
            const float threshold = Options().Soglia;
            frmSettings dlg(this);
            dlg.exec();
            // The exposure's figures rest on the threshold.
            if (Options().Soglia != threshold)
                if (frmExposure *f = frmExposure::Current()) f->Recompute();
            return;
        }
        case 19: ToggleWarnings(); return;
        case 20: InfoButton(); return;
        case 21: Arrange(); return;
        case 23:
        case 24:
            WinHelp(this, DataDir() + QLatin1Char('/') + Shared().HelpFileName, button == 23 ? HELP_FINDER : HELP_INDEX);
            return;
        default:
            if (auto it = Commands.find(button); it != Commands.end()) it->second();
            return;
        }
    });
}

void frmMain::tbrToolbar_ButtonMenuClick(int entry) {
    TrapVoid("tbrToolbar_ButtonMenuClick", [&] {
        if (entry < 1 || entry > 4) return;
        const QString name = Options().RecentFile[size_t(entry)].trimmed();
        if (!OfferToSave()) return;
        if (!LoadFile(name)) {
            MessBox(ResString(7), {}, -1, -1);
            return;
        }
        SaveMRUFile(name);
        OpenRequestedForms();
    });
}

void frmMain::ToggleWarnings() {
    if (!WarningsWindow->isVisible()) {
        ShowWarnings();
    } else {
        WarningsWindow->hide();
        SetButtonValue(19, 0);
    }
}

void frmMain::InfoButton() {
    const QString key = QLatin1String(kInfoKey);
    if (DockControl_.DockState(key) != 0) {
        DockControl_.DockHide(key);
        SetButtonValue(20, 0);
        mnuSubWindow[0]->setChecked(false);
        return;
    }
    if (mnuSubWindow[1]->isChecked()) DockControl_.DockSetState(key, 1);
    else DockControl_.DockShow(key);
    SetButtonValue(20, 1);
    mnuSubWindow[0]->setChecked(true);
}

void frmMain::mnuSubWindow_Click(int index) {
    const QString key = QLatin1String(kInfoKey);
    switch (index) {
    case 0: tbrToolbar_ButtonClick(20); break;
    case 1: {
        // The check mark was toggled by the trigger already when it came from the menu.
        if (sender() != mnuSubWindow[1]) mnuSubWindow[1]->setChecked(!mnuSubWindow[1]->isChecked());
        if (DockControl_.DockState(key) != 0) DockControl_.DockSetState(key, mnuSubWindow[1]->isChecked() ? 1 : 2);
        break;
    }
    case 2: tbrToolbar_ButtonClick(19); break;
    case 4: tbrToolbar_ButtonClick(21); break;
    default: break;
    }
}

void frmMain::mnuSubSubMonitor_Click(int index) {
    for (QAction *a : mnuSubSubMonitor) a->setChecked(false);
    if (index < 0 || index > 9) index = 0;
    if (SelectPort(index)) mnuSubSubMonitor[size_t(index)]->setChecked(true);
}

// The dialog reads the logger while it is already on screen. Its modality must be set
// before it first shows: exec() on a window already shown leaves the main window
// clickable under it.
static void ShowModalThenLoad(QDialog &dlg, const std::function<void()> &load) {
    dlg.setWindowModality(Qt::ApplicationModal);
    dlg.show();
    load();
    dlg.exec();
}

void frmMain::LinkCommand(int button) {
    switch (button) {
    case 6:
        if (!Shared().CommOpen) InitCommunication();
        return;
    case 7:
        if (OfferToSave() && UploadData()) OpenRequestedForms();
        return;
    case 10: {
        frmMonitor dlg(this);
        ShowModalThenLoad(dlg, [&] { dlg.Load(); });
        return;
    }
    case 11: {
        frmIDCode dlg(this);
        ShowModalThenLoad(dlg, [&] { dlg.Load(); });
        return;
    }
    default: return;
    }
}

void frmMain::Arrange() {
    QList<QMdiSubWindow *> windows;
    for (QMdiSubWindow *w : mdiArea->subWindowList())
        if (w->isVisible() && !w->isMinimized()) windows << w;
    if (windows.isEmpty()) return;
    // Right after a show or a resize the area may not have its new size yet.
    if (layout()) layout()->activate();
    // One above the other, each the full width; when that would make them lower than
    // they can be, in as many columns as it takes to keep them all in sight.
    const QSize area = mdiArea->viewport()->size();
    int lowest = 1;
    for (QMdiSubWindow *w : windows) lowest = qMax(lowest, w->minimumSizeHint().height());
    const int n = int(windows.size());
    const int fit = qMax(1, area.height() / lowest);
    const int columns = (n + fit - 1) / fit;
    const int rows = (n + columns - 1) / columns;
    const int w = area.width() / columns;
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow *sub = windows[i];
        // The last column may hold fewer windows: they share its whole height.
        const int column = i / rows, inColumn = qMin(rows, n - column * rows);
        const int h = area.height() / inColumn;
        if (sub->isMaximized()) sub->showNormal();
        sub->setGeometry(column * w, (i % rows) * h, w, h);
        KeepInside(sub);
    }
}

void frmMain::OpenRequestedForms() {
    TrapVoid("OpenRequestedForms", [&] {
        SetBusy(true);
        struct Busy {
            frmMain *m;
            ~Busy() { m->SetBusy(false); }
        } restore{this};
        struct Placement {
            bool wasOpen = false;
            QRect geometry;
        };
        std::map<int, Placement> placed;
        const QMdiSubWindow *active = mdiArea->activeSubWindow();
        const int activeView = active ? active->property("viewButton").toInt() : 0;
        for (int b : {13, 14, 15, 25}) {
            const auto it = Views.find(b);
            if (it == Views.end() || !it->second.isOpen || !it->second.isOpen()) continue;
            for (QMdiSubWindow *w : mdiArea->subWindowList()) {
                if (w->property("viewButton").toInt() != b) continue;
                placed[b] = {true, w->geometry()};
                w->close();
                w->setProperty("viewButton", QVariant());
            }
        }
        // The RF chart is closed in any case; a failure there is of no account.
        for (QMdiSubWindow *w : mdiArea->subWindowList())
            if (w->property("viewButton").toInt() == -13) w->close();
        // A closed view clears its open flag at once, so the buttons open new ones here.
        for (int b : {13, 14, 15, 25}) {
            const auto it = Views.find(b);
            if (it == Views.end()) continue;
            if (placed[b].wasOpen || (it->second.wanted && it->second.wanted())) tbrToolbar_ButtonClick(b);
        }
        tbrToolbar_ButtonClick(21);
        // The tiling places the views that are new; those that were open go back where
        // the user had them.
        for (QMdiSubWindow *w : mdiArea->subWindowList()) {
            const auto p = placed.find(w->property("viewButton").toInt());
            if (p != placed.end() && p->second.wasOpen && !w->isMinimized() && !w->isMaximized())
                w->setGeometry(p->second.geometry);
        }
        // The view the person was working in stays in front.
        for (QMdiSubWindow *w : mdiArea->subWindowList())
            if (activeView > 0 && w->property("viewButton").toInt() == activeView)
                mdiArea->setActiveSubWindow(w);
    });
}

// ---- UiHost ------------------------------------------------------------------

bool frmMain::MessBox(const QString &text, const QString &title, int icon, int mode) {
    return fm::MessBox(text, title, icon, mode);
}

bool frmMain::SystemBox(const QString &text, const QString &title, SystemBoxKind kind) {
    return SystemMessageBox(text, title, kind, isVisible() ? this : nullptr);
}

void frmMain::SetPanelText(const QString &text) {
    lblPanel1->setText(text);
    lblPanel1->repaint();
}

void frmMain::SetButtonEnabled(int button, bool enabled) {
    if (button >= 1 && button <= 25) Buttons[size_t(button)]->setEnabled(enabled);
}

bool frmMain::ButtonEnabled(int button) const {
    return button >= 1 && button <= 25 && Buttons[size_t(button)]->isEnabled();
}

void frmMain::SetButtonValue(int button, int value) {
    if (button >= 1 && button <= 25 && Buttons[size_t(button)]->isCheckable())
        Buttons[size_t(button)]->setChecked(value != 0);
}

void frmMain::UpdateInfo() { Info->Refresh(); }

void frmMain::WarningsChanged() { Warnings->Refresh(); }

void frmMain::ShowWarnings() {
    Warnings->show();
    WarningsWindow->show();
    WarningsWindow->raise();
    SetButtonValue(19, 1);
}

void frmMain::SetBusy(bool busy) {
    if (busy) {
        if (busy_++ == 0) QApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (busy_ > 0 && --busy_ == 0) {
        QApplication::restoreOverrideCursor();
    }
}

void frmMain::RecentFilesChanged() {
    ButtonMenus->clear();
    for (int i = 1; i <= 4; ++i) {
        const QString name = Options().RecentFile[size_t(i)].trimmed();
        if (name.isEmpty()) continue;
        QAction *a = ButtonMenus->addAction(name);
        connect(a, &QAction::triggered, this, [this, i] { tbrToolbar_ButtonMenuClick(i); });
    }
}

void frmMain::WaitShow() {
    if (!wait_) wait_ = new frmWait(this);
    wait_->show();
    wait_->repaint();
}

void frmMain::WaitText(const QString &text) {
    if (wait_) wait_->SetText(text);
}

void frmMain::WaitAnimate(int step) {
    if (wait_) wait_->Animate(step);
}

void frmMain::WaitHide() {
    if (wait_) {
        wait_->Finish();
        wait_->deleteLater();
        wait_ = nullptr;
    }
}

void frmMain::WaitShare(int received, int total) {
    if (!wait_) return;
    wait_->SetShare(received, total);
    // The link waits without letting events run, and a window that has just been shown
    // is only drawn once the window system has mapped it. Let the window system and the
    // pending paints through; input, timers and the port's notifier stay queued, so no
    // click reaches another window and nothing re-enters the link.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
    emit WaitPainted(received, total);
}

double frmMain::AskDate() { return AskStartDate(this); }

void frmMain::SetCommStatus(int image, const QString &text) {
    imgCommStatus->setPixmap(StatusImage(image));
    lblCommStatus->setText(text);
    pctCommStatus->repaint();
}

void frmMain::SetBattImage(int image) {
    imgBattStatus->setPixmap(StatusImage(image));
    imgBattStatus->repaint();
}

void frmMain::DoEvents() { QCoreApplication::processEvents(); }

void frmMain::closeEvent(QCloseEvent *e) {
    if (!closing_) {
        closing_ = true;
        ShutDown(this);
    }
    e->accept();
}

} // namespace fm
