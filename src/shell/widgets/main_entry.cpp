#include "shell/widgets/main_entry.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/file_access.h"
#include "core/language.h"
#include "core/options.h"
#include "core/startup.h"
#include "core/widgets/frm_splash.h"
#include "files/file_names.h"
#include "files/log_file.h"
#include "files/log_recovery.h"
#include "core/interrupts.h"
#include "realtime/live_mode.h"
#include "realtime/realtime_log.h"
#include "link/serial_port.h"
#include "link/timers.h"
#include "link/transaction.h"
#include "shell/command_line.h"
#include "shell/link_handlers.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>

#include <csignal>
#include <cstdlib>
#include <unistd.h>

namespace fm {
namespace {
// The options are written back only when they were read in this run: a start that
// stops before that must not replace a good options file with an empty record, nor
// one that could not be read with the defaults.
bool g_optionsRead = false;
bool g_shutDown = false;

// The host until frmMain exists: its boxes are real windows over the splash, since a
// start that stops must say why on the screen, not only on a console nobody reads.
class SplashHost : public QuietHost {
public:
    QPointer<QWidget> splash;
    bool MessBox(const QString &text, const QString &title, int icon, int mode) override {
        return fm::MessBox(text, title, icon, mode);
    }
    bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) override {
        return SystemMessageBox(text, title, kind, splash);
    }
    void DoEvents() override { QCoreApplication::processEvents(); }
};

// Static: a fault trapped in StartUp still reports through it after the body is left.
SplashHost &StartingHost() {
    static SplashHost host;
    return host;
}
} // namespace

// A live log that a crash or a power cut left open would be refused when loaded.
static void OfferLiveLogRecovery() {
    const QString path = RealTimeLogPath();
    const auto lines = UnclosedLogLines(path);
    if (!lines || *lines <= 0) return;
    if (Host().MessBox(ResString(4401).arg(QFileInfo(path).fileName()).arg(*lines), {}, 1, 0)) {
        if (const auto n = RecoverLog(path)) Host().MessBox(ResString(4402).arg(qlonglong(*n)), {}, 2, 1);
    }
}

bool StartUp(int splashMs, const QStringList &arguments) {
    return Trap("Main", false, [&] {
        InitVariabili();
        g_optionsRead = false;
        g_shutDown = false;
        QElapsedTimer since;  // monotonic: the wait cannot hang across midnight
        since.start();
        auto *splash = new frmSplash;
        StartingHost().splash = splash;
        SetHost(&StartingHost());
        splash->show();
        splash->lblVersion->setText(QStringLiteral("QL540 Version %1.%2.%3")
                                        .arg(FLUXMERE_VERSION_MAJOR).arg(FLUXMERE_VERSION_MINOR)
                                        .arg(FLUXMERE_VERSION_REVISION));
        splash->lblDescription->hide();
        splash->Message(QStringLiteral("Loading Interface..."));
        QCoreApplication::processEvents();
        if (!CheckIntegrity()) {
            delete splash;
            ShutDown(nullptr);
            return false;
        }
        splash->Message(QStringLiteral("Reading Options..."));
        g_optionsRead = ReadOptions();
        if (!InitLibrary(QStringLiteral("Language.dll"))) {
            Host().SystemBox(QStringLiteral("Error loading the Language library. Cannot proceed."),
                             QStringLiteral("CRITICAL ERROR"), SystemBoxKind::CriticalOk);
            delete splash;
            ShutDown(nullptr);
            return false;
        }
        SetLanguage(Options().Language);
        splash->Message(QStringLiteral("Init serial port..."));
        auto *main = new frmMain;
        SetHost(main);
        InstallLinkHandlers();
        main->mnuSubSubMonitor_Click(int(Options().ComPort) - 1);
        Shared().HelpFileName = Options().Language != 0 ? QStringLiteral("Fluxmere_en.hlp")
                                                        : QStringLiteral("Fluxmere_it.hlp");
        splash->Message(QStringLiteral("Starting Application..."));
        while (since.elapsed() <= splashMs) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        delete splash;
        main->show();
        switch (Options().MainWindowState) {
        case 1: main->showMinimized(); break;
        case 2: {
            // The window manager maximises in its own time: the views that the command line
            // opens are tiled to the size the window is about to have, not the one it leaves.
            const QSize before = main->size();
            main->showMaximized();
            QElapsedTimer wait;
            wait.start();
            while (main->size() == before && wait.elapsed() < 1500)
                QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            QCoreApplication::processEvents();
            break;
        }
        default: break;
        }
        OfferLiveLogRecovery();
        if (Options().ConnectOnStart) main->tbrToolbar_ButtonClick(6);
        GestioneCommandLine(CommandTail(arguments), [main] { main->OpenRequestedForms(); });
        return true;
    });
}

void ShutDown(QWidget *form) {
    TrapVoid("ShutDown", [&] {
        if (g_shutDown) return;
        g_shutDown = true;
        SharedState &s = Shared();
        for (int *t : {&s.KeepAliveTimer, &s.TimeoutTimer, &s.LiveTimer}) {
            KillTimer(*t);
            *t = 0;
        }
        frmMain *main = MainForm();
        if (main) main->OfferToSave(-1);
        if (main && g_optionsRead) {
            const auto state = main->windowState();
            Options().MainWindowState = state & Qt::WindowMinimized ? 1 : state & Qt::WindowMaximized ? 2 : 0;
            const int dock = main->DockControl_.DockState(QStringLiteral("frmInfo"));
            Options().InfoShown = dock != 0;
            Options().InfoDocked = dock == 1;
        }
        if (g_optionsRead && Seriale().PortOpen()) Options().ComPort = uint8_t(Seriale().CommPort());
        // Closing the child windows lets each one clear its open flag.
        if (main) {
            main->mdiArea->closeAllSubWindows();
            if (main->WarningsWindow) main->WarningsWindow->hide();
        }
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w != form && w != main && w->isVisible()) w->close();
        FreeResLibrary();
        if (g_optionsRead) SaveOptions();
        Seriale().SetPortOpen(false);
        SetHost(nullptr);
        if (!form) {
            delete main;
            std::exit(1);  // only a start that could not go on ends here
        }
    });
}

int Main(int argc, char **argv) {
    // A file-size limit makes a write fail with EFBIG, reported like a full disk, instead
    // of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    QApplication app(argc, argv);
    app.setApplicationName(QStringLiteral("Fluxmere"));
    // Ended from outside (logout, kill, Ctrl+C in a terminal): a running live log is
    // closed with its count first, so that it loads; then the process ends at once.
    WatchInterrupts([](int sig) {
        if (Shared().RealTimeLogFile > 0) {
            WaitForIdleLink();
            RealTimeView(QStringLiteral("Stop"));
        }
        ::_exit(128 + sig);
    });
    app.setQuitOnLastWindowClosed(true);
    // Names from the raw bytes: QApplication's own text of a name that is not UTF-8 loses them.
    QStringList args;
    for (int i = 1; i < argc; ++i) args << NameFromNative(argv[i]);
    if (!StartUp(3000, args)) return 1;
    const int rc = app.exec();
    delete MainForm();
    return rc;
}

} // namespace fm
