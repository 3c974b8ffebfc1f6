// A start that cannot go on says why in a box on the screen before it ends; the logo
// shows the whole name in the splash and the About box.
//
// A stopped start ends the process, so each such start runs in a child process (this
// program again, told which folder to start from) that reports the box it met and
// presses its OK button; the test looks at that report and at the child's exit status.
#include "core/app_paths.h"
#include "core/options.h"
#include "core/widgets/frm_splash.h"
#include "core/widgets/logo.h"
#include "shell/widgets/frm_about.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QTest>
#include <QTextDocumentFragment>
#include <cstdio>

using namespace fm;

namespace {
const char *kChildDir = "FLUXMERE_START_FROM";

// The child: starts from the given folder, reports the first box (title, text, whether a
// person can see it) on standard output and closes every box with its OK button.
int RunChild(int argc, char **argv) {
    QApplication app(argc, argv);
    const QString dir = qEnvironmentVariable(kChildDir);
    SetAppDir(dir);
    SetWritableDir(dir);
    bool reported = false;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&] {
        QWidget *w = QApplication::activeModalWidget();
        if (!w) return;
        auto *box = qobject_cast<QMessageBox *>(w);
        if (!reported) {
            reported = true;
            const bool exposed = QTest::qWaitForWindowExposed(w, 2000);
            QString text = box ? box->text().trimmed() : QString();
            std::printf("title=%s\ntext=%s\ncritical=%d\nshown=%d\n", qPrintable(w->windowTitle()),
                        qPrintable(text.replace(QStringLiteral("\r\n"), QStringLiteral("|"))),
                        box && box->icon() == QMessageBox::Critical,
                        exposed && w->isVisible() && w->screen()->geometry().contains(w->frameGeometry()));
            std::fflush(stdout);
        }
        if (box) QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        else if (auto *own = w->findChild<QPushButton *>(QStringLiteral("btnOK"))) own->click();
    });
    answer.start(20);
    if (!StartUp(0, {})) return 3;  // a start that stops must not come back here
    std::printf("main=%d\n", MainForm() && MainForm()->isVisible());
    std::fflush(stdout);
    ShutDown(MainForm());
    delete MainForm();
    return 0;
}

struct ChildRun {
    QMap<QString, QString> report;
    int status = -1;
};

ChildRun StartIn(const QString &dir) {
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QString::fromLatin1(kChildDir), dir);
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {});
    ChildRun run;
    if (!child.waitForFinished(30000)) {
        child.kill();
        child.waitForFinished();
        return run;
    }
    const QString out = QString::fromLocal8Bit(child.readAllStandardOutput());
    for (const QString &line : out.split(QLatin1Char('\n'))) {
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (eq > 0) run.report[line.left(eq)] = line.mid(eq + 1);
    }
    run.status = child.exitStatus() == QProcess::NormalExit ? child.exitCode() : -1;
    return run;
}

// The name a logo shows, and whether its label is wide enough for it.
void CheckLogo(Logo *logo) {
    QCOMPARE(QTextDocumentFragment::fromHtml(logo->lblName->text()).toPlainText(),
             QStringLiteral("Fluxmere"));
    const int needed = logo->lblName->fontMetrics().horizontalAdvance(QStringLiteral("Fluxmere"));
    QVERIFY2(needed <= logo->lblName->contentsRect().width(),
             qPrintable(QStringLiteral("%1 > %2").arg(needed).arg(logo->lblName->contentsRect().width())));
    // ... and the label itself lies inside its window.
    QWidget *window = logo->window();
    const QRect shown(logo->lblName->mapTo(window, QPoint(0, 0)), logo->lblName->size());
    QVERIFY(window->rect().contains(shown));
}
} // namespace

class StartupTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

    // A copy of the executable's files, less `missing`; `garbled` is there but unreadable.
    QString Folder(const QString &name, const QString &missing, const QString &garbled = {}) {
        const QString dir = dir_.filePath(name);
        QDir().mkpath(dir);
        for (const char *file : {"Fluxmere_it.hlp", "Fluxmere_en.hlp", "Language.dll"}) {
            const QString f = QString::fromLatin1(file);
            if (f == missing) continue;
            if (f == garbled) test::WriteBytes(dir + QLatin1Char('/') + f, "not a string table");
            else QFile::copy(QCoreApplication::applicationDirPath() + QLatin1Char('/') + f,
                             dir + QLatin1Char('/') + f);
        }
        return dir;
    }

private slots:
    void missingFileStopsTheStartWithABox_data() {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QString>("garbled");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("italian help") << "Fluxmere_it.hlp" << "" << "ERROR" << "Italian Help File Not Found";
        QTest::newRow("english help") << "Fluxmere_en.hlp" << "" << "ERROR" << "English Help Not Found";
        QTest::newRow("language store") << "Language.dll" << "" << "ERROR" << "Language DLL Not Found";
        QTest::newRow("unreadable language store")
            << "" << "Language.dll" << "CRITICAL ERROR"
            << "Error loading the Language library. Cannot proceed.";
    }
    void missingFileStopsTheStartWithABox() {
        QFETCH(QString, missing);
        QFETCH(QString, garbled);
        QFETCH(QString, title);
        QFETCH(QString, text);
        const QString dir = Folder(QString::fromLatin1(QTest::currentDataTag()), missing, garbled);
        OptionsRecord earlier = OptionsRecord::Defaults();
        earlier.ComPort = 7;
        test::WriteBytes(dir + QStringLiteral("/Fluxmere.ini"), earlier.ToBytes());
        const ChildRun run = StartIn(dir);
        QCOMPARE(run.report.value(QStringLiteral("title")), title);
        QCOMPARE(run.report.value(QStringLiteral("text")), text);
        QCOMPARE(run.report.value(QStringLiteral("critical")), QStringLiteral("1"));
        QCOMPARE(run.report.value(QStringLiteral("shown")), QStringLiteral("1"));
        QVERIFY(!run.report.contains(QStringLiteral("main")));
        QCOMPARE(run.status, 1);
        // A good options file from an earlier run is kept: untouched when the start stopped
        // before reading it, written back as it was read otherwise.
        const QByteArray after = test::ReadBytes(dir + QStringLiteral("/Fluxmere.ini"));
        if (!missing.isEmpty()) QCOMPARE(after, earlier.ToBytes());
        QCOMPARE(OptionsRecord::FromBytes(after).ComPort, uint8_t(7));
    }

    void unreadableOptionsAreReportedAndTheStartGoesOn() {
        const QString dir = Folder(QStringLiteral("options"), QString());
        // A folder in the options file's place: no one can read it, whoever runs the test.
        QVERIFY(QDir().mkpath(dir + QStringLiteral("/Fluxmere.ini")));
        const ChildRun run = StartIn(dir);
        QCOMPARE(run.report.value(QStringLiteral("title")), QStringLiteral("ERROR! (Fluxmere)"));
        const QString text = run.report.value(QStringLiteral("text"));
        QVERIFY2(text.startsWith(
                     QStringLiteral("An unpredictable error occurred.|Error Raised by  : ReadOptions|")),
                 qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("Error Number     : 70|")), qPrintable(text));
        QCOMPARE(run.report.value(QStringLiteral("shown")), QStringLiteral("1"));
        QCOMPARE(run.report.value(QStringLiteral("main")), QStringLiteral("1"));
        QCOMPARE(run.status, 0);
        // What could not be read is not replaced at the exit.
        QVERIFY(QFileInfo(dir + QStringLiteral("/Fluxmere.ini")).isDir());
    }

    void logoShowsTheWholeName() {
        test::Fresh fresh;
        frmSplash splash;
        splash.show();
        QVERIFY(QTest::qWaitForWindowExposed(&splash));
        CheckLogo(splash.imgLogo);
        test::Snapshot(&splash, QStringLiteral("splash"));
        frmAbout about(nullptr);
        about.show();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        CheckLogo(about.pctLogo);
    }
};

int main(int argc, char **argv) {
    if (qEnvironmentVariableIsSet(kChildDir)) return RunChild(argc, argv);
    QApplication app(argc, argv);
    StartupTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "startup_test.moc"
