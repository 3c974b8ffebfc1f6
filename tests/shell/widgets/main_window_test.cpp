// The main window as a user meets it: start-up with and without a file, the toolbar and
// menus, the warnings and info windows, the file dialogs and the way out. Then the views
// after new data (a second file, a recent file, two files on the command line, the views
// the options ask for, a load that fails under an open list) and the window on a desktop
// screen: its size, the information panel, child windows in sight, the dialogs' folders.
// Last, against the simulators on a pseudo-terminal, a technician's day driven with the
// mouse (open a log and the three views, connect, program a session with today's date,
// upload, click a point of the chart), the upload's wait window at the line's own rate,
// the Surveyor import from the File menu, and a live run in the viewer.
#include "analysis/warnings.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "monitor/widgets/frm_monitor.h"
#include "realtime/live_mode.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"
#include "realtime/widgets/frm_view.h"
#include "shell/data_list.h"
#include "shell/file_folders.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_about.h"
#include "shell/widgets/frm_date.h"
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_settings.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/frm_wait.h"
#include "shell/widgets/frm_warnings.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <unistd.h>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDockWidget>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

using namespace fm;

namespace {
// Pixels clearly darker than the window's face: the strokes of painted text.
int DarkPixels(const QImage &image, const QRect &area) {
    int dark = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (image.valid(x, y) && qGray(image.pixel(x, y)) < 110) ++dark;
    return dark;
}

struct Seen {
    int received = 0, total = 0;
    bool visible = false;
    int textInk = 0, shareInk = 0;
    QString share;
    int ticks = 0;
};
} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;  // "Com 1" of the tests: a pseudo-terminal nobody answers on
    QString log_, first_, second_, third_, broken_;
    QTemporaryDir road_;  // the simulators' folder: their "com1" stands there
    QStringList asked_;  // every message box the day brought up, in order

    // Answers each message box with its first button, as a user who agrees; the session
    // dialog is left to the step that opened it.
    void AgreeToEveryBox(QObject *owner) {
        auto *poll = new QTimer(owner);
        connect(poll, &QTimer::timeout, owner, [this] {
            if (auto *box = qobject_cast<frmMessageBox *>(QApplication::activeModalWidget())) {
                asked_ << box->lblMessage->text();
                QTest::mouseClick(box->btnOK, Qt::LeftButton);
            }
        });
        poll->start(20);
    }
    static void Press(frmMain *m, int button) {
        QWidget *w = m->tbrToolbar->widgetForAction(m->Buttons[button]);
        QVERIFY(w && w->isEnabled());
        QTest::mouseClick(w, Qt::LeftButton);
    }
    // The views standing in the window area (a closed one may linger a moment).
    static QStringList OpenViews(frmMain *m) {
        QStringList names;
        for (QMdiSubWindow *w : m->mdiArea->subWindowList())
            if (w->isVisible() && w->widget()) names << QString::fromLatin1(w->widget()->metaObject()->className());
        names.sort();
        return names;
    }
    static QStringList Views() {
        return {QStringLiteral("fm::frmGraphSt"), QStringLiteral("fm::frmGraphTe"), QStringLiteral("fm::frmSource"),
                QStringLiteral("fm::frmWarnings")};
    }


    static void WriteOptions(bool te, bool st, bool source, int windowState = 0, int language = 1) {
        OptionsRecord o = OptionsRecord::Defaults();
        o.OpenGraphTe = te;
        o.OpenGraphSt = st;
        o.OpenSource = source;
        o.ShowWarnings = false;
        o.FirstRun = false;
        o.MainWindowState = int16_t(windowState);
        o.Language = uint8_t(language);
        test::WriteBytes(OptionsPath(), o.ToBytes());
    }
    frmMain *Start(const QStringList &args = {}) {
        Data() = MeasurementData{};
        Warnings().clear();
        if (!StartUp(0, args)) return nullptr;
        MainForm()->resize(1200, 860);
        QTest::qWait(20);  // the views closed by a second load go
        return MainForm();
    }
    // A start at the size the window opens with, the views of the default options.
    frmMain *StartDesktop(int windowState = 0, const QStringList &args = {}, int language = 1) {
        WriteOptions(true, false, true, windowState, language);
        Data() = MeasurementData{};
        if (!StartUp(0, args)) return nullptr;
        QTest::qWait(20);
        return MainForm();
    }
    static QList<QMdiSubWindow *> Visible(frmMain *m) {
        QList<QMdiSubWindow *> out;
        for (QMdiSubWindow *w : m->mdiArea->subWindowList())
            if (w->isVisible()) out << w;
        return out;
    }
    template <class Form>
    static Form *Shown(frmMain *m) { return test::Shown<Form>(m); }
    // The view windows standing open, by their button.
    static std::map<int, QMdiSubWindow *> Open(frmMain *m) {
        std::map<int, QMdiSubWindow *> open;
        for (QMdiSubWindow *w : m->mdiArea->subWindowList())
            if (w->isVisible() && w->property("viewButton").toInt() > 0)
                open[w->property("viewButton").toInt()] = w;
        return open;
    }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
        log_ = dir_.filePath(QStringLiteral("five.log"));
        test::WriteBytes(log_, test::FiveSampleLog());
        first_ = dir_.filePath(QStringLiteral("first.log"));
        second_ = dir_.filePath(QStringLiteral("second.log"));
        third_ = dir_.filePath(QStringLiteral("third.log"));
        broken_ = dir_.filePath(QStringLiteral("broken.log"));
        test::WriteDayLog(first_, 144, 50);
        test::WriteDayLog(second_, 60);
        test::WriteDayLog(third_, 30, 3);
        // Ten samples announced, three there: the load ends half-way, after the arrays were sized.
        test::WriteBytes(
            broken_,
            test::LogText({"Field Activity Log", "20/10/2026 09:00:00@20/10/2026 10:00:00@3", "1n", "10",
                           "ID", "Rotta", "9.00 9.00 9.00  0", "8.00 8.00 8.00  0", "7.00 7.00 7.00  0"}));
    }
    void cleanup() {
        CommonDialog::SetResponder(nullptr);
        Shared().CommOpen = false;
        Shared().MonitorState = -1;
        test::CloseMain(MainForm());
    }
    void cleanupTestCase() { ::close(pty_); }

    void startsEmptyWithDataCommandsOff() {
        QFile::remove(OptionsPath());
        frmMain *m = Start();
        QVERIFY(m);
        for (int b : {3, 4, 13, 14, 15}) QVERIFY2(!m->ButtonEnabled(b), qPrintable(QString::number(b)));
        for (int b : {2, 6, 7, 9, 10, 11, 17, 19, 20, 21, 23, 24}) QVERIFY(m->ButtonEnabled(b));
        emit m->mnuFile->aboutToShow();
        QVERIFY(!m->mnuSubFile[1]->isEnabled());
        QVERIFY(!m->mnuSubFile[5]->isEnabled());
        QVERIFY(m->mnuSubFile[4]->isEnabled());
        QCOMPARE(m->Info->lblNumData->text(), QStringLiteral("---"));
        QCOMPARE(m->lblCommStatus->text(), ResString(3042));  // "Com 1" opened at start
        QVERIFY(m->mnuSubSubMonitor[0]->isChecked());
        emit m->mnuMonitor->aboutToShow();
        QVERIFY(m->mnuSubMonitor[7]->isEnabled());
        QVERIFY(!m->mnuSubMonitor[2]->isVisible());
        QCOMPARE(m->windowTitle(), ResString(4037));
    }

    // A file on the command line: the data buttons on, the findings and the data list up.
    void commandLineLoadsTheFindingsAndTheList() {
        frmMain *m = Start({QStringLiteral("-L"), log_});
        QVERIFY(m);
        QCOMPARE(m->Info->lblNumData->text(), QStringLiteral("5"));
        for (int b : {3, 4, 13, 14, 15}) QVERIFY(m->ButtonEnabled(b));
        QVERIFY(m->WarningsWindow->isVisible());
        QCOMPARE(m->ButtonValue(19), 1);
        QVERIFY(m->Warnings->trwWarning->topLevelItemCount() >= 5);
        test::Snapshot(m, QStringLiteral("main_loaded"));
        // The close box hides the findings; button 19 brings them back.
        m->WarningsWindow->close();
        QCOMPARE(m->ButtonValue(19), 0);
        m->tbrToolbar_ButtonClick(19);
        QVERIFY(m->WarningsWindow->isVisible());
        emit m->mnuWindows->aboutToShow();
        QVERIFY(m->mnuSubWindow[2]->isChecked());

        frmSource *list = m->findChild<frmSource *>();
        QVERIFY(list && Shared().SourceOpen);
        QCOMPARE(list->windowTitle(), ResString(4074) + QStringLiteral(" [") + log_ + QLatin1Char(']'));
        QCOMPARE(list->txtSource->MarkedLine(), list->txtSource->List()->MedianLine());
        list->GetSourceRow(3);  // chart point 3 is sample 4
        QCOMPARE(list->txtSource->CurrentLine(), qint64(10));
        list->SwitchOrder();
        QCOMPARE(list->lblOrder->text(), QStringLiteral("Lista dei dati ordinati per valore di risultante magnetica"));
        list->GetSourceRow(0);  // in value order a chart point changes nothing
        QCOMPARE(list->txtSource->CurrentLine(), qint64(-1));
        list->SwitchOrder();
        QCOMPARE(list->lblOrder->text(), QStringLiteral("Lista dei dati ordinati cronologicamente"));
        m->tbrToolbar_ButtonClick(15);  // a second click makes no second window
        QCOMPARE(m->findChildren<frmSource *>().size(), 1);
    }

    void unknownCommandLineTokenIsReported() {
        QString seen;
        test::WhenModal([&](QWidget *w) {
            if (auto *box = qobject_cast<QMessageBox *>(w)) seen = box->text();
            w->close();
        });
        frmMain *m = Start({QStringLiteral("-l"), log_});
        QVERIFY(m);
        QCOMPARE(seen, QStringLiteral("Parametro sconosciuto in riga di comando"));
        QVERIFY(!Data().DataPresent);
    }

    void messageBoxModes() {
        frmMain *m = Start();
        QVERIFY(m);
        QString title, ok;
        bool cancelShown = true;
        test::WhenModal([&](QWidget *w) {
            auto *box = qobject_cast<frmMessageBox *>(w);
            title = box->windowTitle();
            ok = box->btnOK->text();
            cancelShown = box->btnCancel->isVisible();
            box->btnOK->click();
        });
        QVERIFY(MessBox(QStringLiteral("A plain notice")));
        QCOMPARE(title, ResString(2));
        QCOMPARE(ok, ResString(4001));
        QVERIFY(!cancelShown);
        // Yes/no, closed by its frame: false.
        test::WhenModal([&](QWidget *w) {
            title = w->windowTitle();
            w->close();
        });
        QVERIFY(!MessBox(QStringLiteral("Save?"), QStringLiteral("Own title"), 2, 0));
        QCOMPARE(title, QStringLiteral("Own title"));
    }

    void loadDialogAndRecentFiles() {
        frmMain *m = Start();
        QVERIFY(m);
        const QString before = Options().LastPath;
        CommonDialog::SetResponder([](const CommonDialog &, bool) { return std::nullopt; });
        m->tbrToolbar_ButtonClick(2);
        QCOMPARE(Options().LastPath, before);
        QVERIFY(!Data().DataPresent);
        CommonDialog::SetResponder(
            [this](const CommonDialog &d, bool save) -> std::optional<CommonDialog::Answer> {
                if (save || d.DialogTitle != ResString(3001)) return std::nullopt;
                return CommonDialog::Answer{log_, 1};
            });
        m->tbrToolbar_ButtonClick(2);
        QVERIFY(Data().DataPresent);
        QCOMPARE(Options().LastPath.trimmed(), dir_.path() + QLatin1Char('/'));
        QCOMPARE(Options().RecentFile[1].trimmed(), log_);
        QCOMPARE(m->ButtonMenus->actions().size(), 1);
        QCOMPARE(m->ButtonMenus->actions().first()->text(), log_);
    }

    void portChoiceLeavesOneCheckMark() {
        frmMain *m = Start();
        QVERIFY(m);
        QString said;
        test::WhenModal([&](QWidget *w) {
            said = qobject_cast<frmMessageBox *>(w)->lblMessage->text();
            w->close();
        });
        m->mnuSubSubMonitor_Click(6);  // no "Com 7" here
        // The advice, then the system's cause.
        QCOMPARE(said, ResString(6) + QStringLiteral("\r\nInvalid port number"));
        for (QAction *a : m->mnuSubSubMonitor) QVERIFY(!a->isChecked());
        QCOMPARE(m->lblCommStatus->text(), ResString(5));
        m->mnuSubSubMonitor_Click(0);
        QVERIFY(m->mnuSubSubMonitor[0]->isChecked());
        emit m->mnuSubSubMonitorMenu->aboutToShow();
        QVERIFY(m->mnuSubSubMonitor[0]->statusTip().endsWith(QStringLiteral("com1")));
        Options().ComPort = 4;
        test::CloseMain(m);
        QCOMPARE(OptionsRecord::FromBytes(test::ReadBytes(OptionsPath())).ComPort, uint8_t(1));
    }

    void infoWindowButtonAndDocking() {
        frmMain *m = Start();
        QVERIFY(m);
        const QString key = QStringLiteral("frmInfo");
        QCOMPARE(m->DockControl_.DockState(key), 1);
        m->tbrToolbar_ButtonClick(20);
        QCOMPARE(m->DockControl_.DockState(key), 0);
        QCOMPARE(m->ButtonValue(20), 0);
        m->tbrToolbar_ButtonClick(20);
        QCOMPARE(m->DockControl_.DockState(key), 1);
        m->mnuSubWindow_Click(1);  // undock
        QCOMPARE(m->DockControl_.DockState(key), 2);
    }

    void shutDownOffersToSaveAndWritesOptions() {
        frmMain *m = Start({QStringLiteral("-L"), log_});
        QVERIFY(m);
        Data().DataSaved = false;
        const QString target = dir_.filePath(QStringLiteral("saved_at_exit.log"));
        QFile::remove(target);
        CommonDialog::SetResponder(
            [&](const CommonDialog &d, bool save) -> std::optional<CommonDialog::Answer> {
                if (!save || d.DialogTitle != ResString(3003)) return std::nullopt;
                return CommonDialog::Answer{target, 1};
            });
        test::WhenModal([](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnOK->click(); });
        ShutDown(m);
        delete m;
        QVERIFY(QFile::exists(target));
        QCOMPARE(QFileInfo(OptionsPath()).size(), qint64(kOptionsRecordSize));
        const OptionsRecord stored = OptionsRecord::FromBytes(test::ReadBytes(OptionsPath()));
        QVERIFY(stored.InfoShown);
        QCOMPARE(stored.MainWindowState, int16_t(0));
    }

    // An upload not yet saved is not replaced by File > Open without the question; a save
    // dialog cancelled keeps it, a "no" lets the new file in.
    void newDataAsksBeforeReplacingAnUnsavedMeasurement() {
        frmMain *m = Start({QStringLiteral("-L"), log_});
        QVERIFY(m);
        const QString other = dir_.filePath(QStringLiteral("other.log"));
        QFile::remove(other);
        QVERIFY(QFile::copy(log_, other));
        const QString kept = dir_.filePath(QStringLiteral("kept.log"));
        QFile::remove(kept);
        QString saveAnswer;  // empty: the save dialog is cancelled
        QStringList asked;
        CommonDialog::SetResponder([&](const CommonDialog &d, bool save) -> std::optional<CommonDialog::Answer> {
            asked << d.DialogTitle;
            if (save) return saveAnswer.isEmpty() ? std::nullopt : std::optional(CommonDialog::Answer{saveAnswer, 1});
            return CommonDialog::Answer{other, 1};
        });
        const auto answer = [](bool yes) {
            test::WhenModal([yes](QWidget *w) {
                auto *box = qobject_cast<frmMessageBox *>(w);
                QVERIFY(box);
                QCOMPARE(box->lblMessage->text(), ResString(31));
                (yes ? box->btnOK : box->btnCancel)->click();
            });
        };
        // Yes, then the save dialog cancelled: nothing is opened, the upload stays.
        Data().DataSaved = false;
        Data().DataSource = QStringLiteral("Upload");
        answer(true);
        m->mnuSubFile[0]->trigger();
        QCOMPARE(asked, QStringList{ResString(3003)});
        QCOMPARE(Data().DataSource, QStringLiteral("Upload"));
        // Yes and a name: saved first, then the other file opens.
        asked.clear();
        saveAnswer = kept;
        answer(true);
        m->mnuSubFile[0]->trigger();
        QCOMPARE(asked, (QStringList{ResString(3003), ResString(3001)}));
        QVERIFY(QFile::exists(kept));
        QCOMPARE(Data().DataFile, other);
        // No: the new file replaces it without a save.
        asked.clear();
        Data().DataSaved = false;
        answer(false);
        m->mnuSubFile[0]->trigger();
        QCOMPARE(asked, QStringList{ResString(3001)});
        QVERIFY(Data().DataSaved);
    }

    // A live log that a crash left open is offered back at the next start, and loads after.
    void aLiveLogLeftOpenIsOfferedBackAtStart() {
        const QString path = RealTimeLogPath();
        test::WriteBytes(path, test::CrashedLiveLog());
        QStringList asked;
        test::WhenModal([&](QWidget *w) {
            auto *question = qobject_cast<frmMessageBox *>(w);
            QVERIFY(question);
            asked << question->lblMessage->text();
            test::WhenModal([&](QWidget *w2) {
                auto *notice = qobject_cast<frmMessageBox *>(w2);
                QVERIFY(notice);
                asked << notice->lblMessage->text();
                notice->btnOK->click();
            });
            question->btnOK->click();
        });
        frmMain *m = Start();
        QVERIFY(m);
        QCOMPARE(asked, (QStringList{ResString(4401).arg(QStringLiteral("RealTime.log")).arg(2),
                                     ResString(4402).arg(2)}));
        QVERIFY(LoadFile(path));
        QCOMPARE(Data().DataCount, 2);
        QFile::remove(path);
    }

    void aboutCreditsNeedTheWholeSequence() {
        frmMain *m = Start();
        QVERIFY(m);
        frmAbout::ShiftCtrlDown = [] { return true; };
        for (const char *typed : {"opensky", "opexsky"}) {
            frmAbout about(m);
            about.show();
            QTest::keyClicks(&about, QLatin1String(typed));
            bool credits = false;
            test::WhenModal(
                [&](QWidget *w) {
                    credits = w->objectName() == QLatin1String("frmHidden");
                    w->close();
                },
                20);
            about.btnOK->click();
            QCOMPARE(credits, QByteArray(typed) == "opensky");
            QVERIFY(about.lblEEprom->text().endsWith(QStringLiteral(" 512 Kbit")));
        }
    }

    void dateDialogCancelGivesThePlaceholderDate() {
        frmDate dlg(nullptr);
        dlg.show();
        dlg.btnAnnulla->click();
        QCOMPARE(dlg.Result, DateFromParts(2001, 1, 1));
        frmDate ok(nullptr);
        ok.lblDate->setText(QStringLiteral("not a date"));
        ok.btnOk->click();
        QCOMPARE(ok.Result, DateFromParts(2001, 1, 1));
    }

    void aSecondLoadReopensTheViewsWhereTheyStood() {
        WriteOptions(false, false, false);
        frmMain *m = Start();
        QVERIFY(m);
        test::OpenFromMenu(m, first_);
        QVERIFY(Open(m).empty());
        // F4, F5, F6 as the person presses them.
        m->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m));
        for (Qt::Key key : {Qt::Key_F4, Qt::Key_F5, Qt::Key_F6}) QTest::keyClick(m, key);
        QCOMPARE(Open(m).size(), size_t(3));
        // Each where the person dragged it.
        const std::map<int, QRect> where{
            {13, QRect(10, 10, 640, 380)}, {14, QRect(660, 10, 480, 380)}, {15, QRect(60, 400, 900, 300)}};
        for (auto &[b, w] : Open(m)) w->setGeometry(where.at(b));
        m->mdiArea->setActiveSubWindow(Open(m).at(13));  // a click on the chart's title

        test::OpenFromMenu(m, second_);
        auto open = Open(m);
        QCOMPARE(open.size(), size_t(3));
        for (auto &[b, w] : open) QCOMPARE(w->geometry(), where.at(b));
        QCOMPARE(m->mdiArea->activeSubWindow(), open.at(13));
        QCOMPARE(m->findChildren<frmGraphTe *>().size(), 1);
        QCOMPARE(m->findChildren<frmGraphSt *>().size(), 1);
        QCOMPARE(m->findChildren<frmSource *>().size(), 1);
        QVERIFY(Shared().GraphTeOpen && Shared().GraphStOpen && Shared().SourceOpen);
        // They show the new data.
        QCOMPARE(Shown<frmGraphTe>(m)->teeEvolution->Count(3), 60);
        QCOMPARE(Shown<frmSource>(m)->txtSource->List()->LineCount(), 7 + 60);
        QCOMPARE(Shown<frmSource>(m)->windowTitle(),
                 ResString(4074) + QStringLiteral(" [") + second_ + QLatin1Char(']'));

        // A recent file from button 2's drop-down does the same.
        m->ButtonMenus->actions().at(1)->trigger();  // first.log, behind second.log
        QCOMPARE(Data().DataFile, first_);
        open = Open(m);
        QCOMPARE(open.size(), size_t(3));
        for (auto &[b, w] : open) QCOMPARE(w->geometry(), where.at(b));
        QCOMPARE(Shown<frmGraphTe>(m)->teeEvolution->Count(3), 144);

        // A view the person closed stays closed.
        open.at(14)->close();
        test::OpenFromMenu(m, third_);
        open = Open(m);
        QCOMPARE(open.size(), size_t(2));
        QVERIFY(!open.count(14) && !Shared().GraphStOpen);
        QCOMPARE(open.at(13)->geometry(), where.at(13));
    }

    void theOptionsAddTheirViews() {
        WriteOptions(false, true, false);
        frmMain *m = Start();
        QVERIFY(m);
        test::OpenFromMenu(m, first_);
        auto open = Open(m);
        QCOMPARE(open.size(), size_t(1));
        QVERIFY(open.count(14));
        // The list the person opens comes back beside the one the options ask for.
        m->tbrToolbar_ButtonClick(15);
        Open(m).at(15)->setGeometry(30, 300, 800, 320);
        test::OpenFromMenu(m, second_);
        open = Open(m);
        QCOMPARE(open.size(), size_t(2));
        QVERIFY(open.count(14) && open.count(15));
        QCOMPARE(open.at(15)->geometry(), QRect(30, 300, 800, 320));
    }

    void twoFilesOnTheCommandLine() {
        WriteOptions(true, true, true);
        frmMain *m = Start({QStringLiteral("-L"), first_, QStringLiteral("-L"), second_});
        QVERIFY(m);
        QCOMPARE(Data().DataFile, second_);
        const auto open = Open(m);
        QCOMPARE(open.size(), size_t(3));
        QCOMPARE(m->findChildren<frmGraphTe *>().size(), 1);
        QCOMPARE(m->findChildren<frmGraphSt *>().size(), 1);
        QCOMPARE(m->findChildren<frmSource *>().size(), 1);
        QCOMPARE(Shown<frmGraphTe>(m)->teeEvolution->Count(3), 60);
    }

    // The record is left half new; the list on show keeps what it was made from.
    void aFailedLoadLeavesTheListAsItWas() {
        WriteOptions(true, false, true);
        frmMain *m = Start({QStringLiteral("-L"), third_});
        QVERIFY(m);
        frmSource *list = Shown<frmSource>(m);
        QVERIFY(list);
        QTest::mouseClick(list->tbrGraphSrc->widgetForAction(list->btnOrder), Qt::LeftButton);
        QVERIFY(!list->IsChronological());
        const DataList *shown = list->txtSource->List();
        QStringList before;
        for (int64_t i = 0; i < shown->LineCount(); ++i) before << shown->Line(i);
        QCOMPARE(before.size(), 7 + 30);
        const QString firstLabel = Shown<frmGraphTe>(m)->teeEvolution->Label(0);

        // The boxes (the fault, then "not loaded") come up while the list stays on screen.
        QStringList said;
        QTimer answer;
        connect(&answer, &QTimer::timeout, [&] {
            if (QWidget *w = QApplication::activeModalWidget()) {
                for (QLabel *l : w->findChildren<QLabel *>())
                    if (!l->text().isEmpty()) said << l->text();
                list->txtSource->viewport()->repaint();  // the list repaints under the box
                w->close();
            }
        });
        answer.start(10);
        test::OpenFromMenu(m, broken_);
        answer.stop();
        QVERIFY(said.contains(ResString(7)));
        QCOMPARE(Data().DataCount, 10);  // the record holds the new count and part of the new samples

        QCOMPARE(Shown<frmSource>(m), list);
        QCOMPARE(list->txtSource->List(), shown);
        QStringList after;
        for (int64_t i = 0; i < shown->LineCount(); ++i) after << shown->Line(i);
        QCOMPARE(after, before);
        QVERIFY(!list->IsChronological());
        list->txtSource->viewport()->repaint();
        // The chart on show keeps its dates too.
        ChartControl *c = Shown<frmGraphTe>(m)->teeEvolution;
        QCOMPARE(c->Count(3), 30);
        QCOMPARE(c->Label(0), firstLabel);
    }

    void opensToFitTheScreen() {
        frmMain *m = StartDesktop();
        QVERIFY(m);
        const QRect free = m->screen()->availableGeometry();
        QVERIFY(free.contains(m->geometry()));
        QCOMPARE(m->width(), int(free.width() * 0.8 + 0.5));
        QVERIFY(qAbs(m->geometry().center().x() - free.center().x()) <= 1);
    }

    // The panel kept growing with the session's state, and took the child windows' close
    // buttons off the right edge with it. The Italian states are the longer ones.
    void infoPanelKeepsItsWidthWhenTheLinkComesUp() {
        frmMain *m = StartDesktop(0, {QStringLiteral("-L"), first_}, 0);
        QVERIFY(m);
        QVERIFY(QTest::qWaitForWindowExposed(m));
        QDockWidget *dock = m->DockControl_.Dock(QStringLiteral("frmInfo"));
        QVERIFY(dock && dock->isVisible());
        const int before = dock->width();
        const int areaBefore = m->mdiArea->width();
        for (int state : {1, 0}) {
            Shared().CommOpen = true;
            Shared().MonitorState = state;
            m->UpdateInfo();
            QTest::qWait(30);
            QCOMPARE(dock->width(), before);
            QCOMPARE(m->mdiArea->width(), areaBefore);
            for (QLabel *l : {m->Info->lblMonitorStatus, m->Info->lblCommStatus})
                QVERIFY2(l->contentsRect().width() >= l->fontMetrics().horizontalAdvance(l->text()),
                         qPrintable(l->text()));
        }
        // A long value is cut at the edge and shown whole in its tooltip.
        Data().DataSource =
            QStringLiteral("/home/someone/") + QString(300, QLatin1Char('x')) + QStringLiteral(".log");
        m->UpdateInfo();
        m->Info->lblDataSource->grab();
        QCOMPARE(dock->width(), before);
        QCOMPARE(m->Info->lblDataSource->toolTip(), Data().DataSource);
    }

    void childWindowsStayInSight() {
        frmMain *m = StartDesktop(0, {QStringLiteral("-L"), first_});
        QVERIFY(m);
        m->resize(760, 520);
        QTest::qWait(20);
        const QRect area = m->mdiArea->viewport()->rect();
        m->tbrToolbar_ButtonClick(14);  // F5: the statistics chart, larger than the area is high
        QMdiSubWindow *stats = m->mdiArea->activeSubWindow();
        QVERIFY(stats && stats->property("viewButton").toInt() == 14);
        QVERIFY(area.contains(stats->geometry()));
        m->tbrToolbar_ButtonClick(19);  // the warnings too: four windows in a low area
        m->resize(760, 420);
        QTest::qWait(20);
        m->tbrToolbar_ButtonClick(21);
        const QRect low = m->mdiArea->viewport()->rect();
        QCOMPARE(Visible(m).size(), 4);
        for (QMdiSubWindow *w : Visible(m)) QVERIFY2(low.contains(w->geometry()), qPrintable(w->windowTitle()));
    }

    void maximisedStartTilesToTheMaximisedSize() {
        frmMain *m = StartDesktop(2, {QStringLiteral("-L"), first_});
        QVERIFY(m);
        QVERIFY(m->isMaximized());
        const QSize area = m->mdiArea->viewport()->size();
        int right = 0, bottom = 0;
        for (QMdiSubWindow *w : Visible(m)) {
            right = qMax(right, w->geometry().right() + 1);
            bottom = qMax(bottom, w->geometry().bottom() + 1);
        }
        QCOMPARE(right, area.width());
        QVERIFY2(area.height() - bottom < 4,
                 qPrintable(QStringLiteral("%1 of %2").arg(bottom).arg(area.height())));
    }

    void fileDialogsOpenInTheFolderOfTheirKind() {
        frmMain *m = StartDesktop(0, {QStringLiteral("-L"), first_});
        QVERIFY(m);
        Options().LastPath = OptionText(AppDir());  // as a first start leaves it
        QStringList opened;
        QString answer;
        CommonDialog::SetResponder([&](const CommonDialog &d, bool) -> std::optional<CommonDialog::Answer> {
            opened << QDir::cleanPath(d.InitDir);
            if (answer.isEmpty()) return std::nullopt;
            return CommonDialog::Answer{answer, 1};
        });
        frmGraphTe *chart = frmGraphTe::Current();
        QVERIFY(chart);
        chart->SaveImage();
        m->tbrToolbar_ButtonClick(2);
        m->tbrToolbar_ButtonClick(4);
        QCOMPARE(opened, QStringList(3, QDir::cleanPath(test::Documents())));

        const QString pictures = dir_.filePath(QStringLiteral("pictures")),
                      tables = dir_.filePath(QStringLiteral("tables"));
        QDir().mkpath(pictures);
        QDir().mkpath(tables);
        answer = pictures + QStringLiteral("/chart.jpg");
        chart->SaveImage();
        answer = tables + QStringLiteral("/table.csv");
        m->tbrToolbar_ButtonClick(4);
        QVERIFY(QFileInfo::exists(answer));
        answer.clear();
        opened.clear();
        chart->SaveImage();
        m->tbrToolbar_ButtonClick(4);
        m->tbrToolbar_ButtonClick(2);
        QCOMPARE(opened, (QStringList{pictures, tables, QDir::cleanPath(test::Documents())}));
        QCOMPARE(Options().LastPath.trimmed(), AppDir());  // an export leaves the logs' folder alone
    }

    // The colour dialog shares its properties with the file commands, and kept the title
    // of the last of them.
    void colourDialogHasItsOwnTitle() {
        frmMain *m = StartDesktop(0, {QStringLiteral("-L"), first_});
        QVERIFY(m);
        CommonDialog::SetResponder([](const CommonDialog &, bool) { return std::nullopt; });
        frmGraphTe::Current()->SaveImage();
        QCOMPARE(m->dlgFile.DialogTitle, ResString(3007));
        CommonDialog::SetResponder(nullptr);
        frmSettings settings(m);
        QString title;
        test::WhenModal([&](QWidget *w) {
            title = w->windowTitle();
            w->close();
        });
        settings.pctColor[0]->click();
        QCOMPARE(title, ResString(3060) + QStringLiteral(": ") + ResString(4062));
    }

    void theWholeDay() {
        SetWritableDir(road_.path());
        test::Simulator sim(road_.path(), {"--fast", "--memory", "8192"});
        QVERIFY(!sim.device.isEmpty());
        const QString log = road_.filePath(QStringLiteral("day.log"));
        test::WriteDayLog(log, 144, 30);
        Data() = MeasurementData{};
        QVERIFY(StartUp(0, {QStringLiteral("-L"), log}));
        frmMain *m = MainForm();
        QVERIFY(m);
        m->resize(1200, 800);
        m->show();
        QVERIFY(QTest::qWaitForWindowExposed(m));
        // The start tiled the views to the window's first size, a part of the small test screen.
        Press(m, 21);
        AgreeToEveryBox(m);

        // The three views from the toolbar.
        for (int b : {13, 14, 15}) Press(m, b);
        QCOMPARE(OpenViews(m), Views());

        // Connect: the link comes up after the question.
        Press(m, 6);
        QTRY_VERIFY(Shared().CommOpen);
        QVERIFY(!asked_.isEmpty());

        // Program a session that starts now and runs until the memory is full.
        bool started = false;
        auto *poll = new QTimer(m);
        connect(poll, &QTimer::timeout, m, [&, poll] {
            auto *dlg = qobject_cast<frmMonitor *>(QApplication::activeModalWidget());
            if (!dlg) return;  // still reading the logger's settings
            poll->stop();
            QTest::mouseClick(dlg->optStartDate[0], Qt::LeftButton);
            QTest::mouseClick(dlg->optStopDate[0], Qt::LeftButton);
            // The start waits for Close on its page of steps.
            auto *closer = new QTimer(dlg);
            connect(closer, &QTimer::timeout, dlg, [dlg, closer] {
                if (!dlg->btnClose->isVisible() || !dlg->btnClose->isEnabled()) return;
                closer->stop();
                QTest::mouseClick(dlg->btnClose, Qt::LeftButton);
            });
            closer->start(20);
            QTest::mouseClick(dlg->btnStartMonitor, Qt::LeftButton);
            started = dlg->lblStatus->text() == ResString(3010);
            dlg->close();
        });
        poll->start(20);
        Press(m, 10);
        QVERIFY(started);
        QCOMPARE(Shared().MonitorState, int16_t(1));
        const int questionsBefore = asked_.size();
        sim.Say(QStringLiteral("samples 500"));  // later that day, the logger has recorded

        // Upload: the running session is stopped after its question, the data set replaced,
        // and the three views come back on the new data.
        Press(m, 7);
        QTRY_COMPARE(Data().DataSource, QStringLiteral("Upload"));
        QVERIFY(asked_.size() > questionsBefore);
        QCOMPARE(Data().DataCount, 500);
        QCOMPARE(OpenViews(m), Views());
        QVERIFY(m->windowTitle().startsWith(ResString(4037)));

        // The chart's point 100, clicked at its pixel, selects its row in the list.
        frmGraphTe *chart = frmGraphTe::Current();
        frmSource *list = frmSource::Current();
        QVERIFY(chart && list);
        QCOMPARE(chart->teeEvolution->Count(3), int(Data().DataCount));
        QWidget *plot = chart->teeEvolution->Plot();
        const QPoint at = chart->teeEvolution->PointPosition(3, 100).toPoint();
        QTest::mouseClick(plot, Qt::LeftButton, {}, at);
        const qint64 row = list->txtSource->CurrentLine();
        QVERIFY(row >= 0);
        QCOMPARE(list->txtSource->List()->SampleOfLine(row), 101);
        QTest::qWait(100);  // the chart redraws on the next turn of the event loop
        test::Snapshot(m, QStringLiteral("road_6_point_clicked"));

        test::CloseMain(m);
    }

    void uploadPaintsTheShareReceived() {
        SetWritableDir(road_.path());
        // 4096 bytes at 1920 bytes a second: two seconds of reply.
        test::Simulator sim(road_.path(), {"--memory", "4096"});
        QVERIFY(!sim.device.isEmpty());
        QVERIFY(StartUp(0, {}));  // "Com 1" is the link beside the options
        frmMain *m = MainForm();
        QVERIFY(m);
        m->resize(1000, 700);

        int ticks = 0;  // a timer of the application's own kind, which must not run
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
        ticker.start(5);

        std::vector<Seen> seen;
        connect(m, &frmMain::WaitPainted, this, [&](int received, int total) {
            frmWait *w = m->findChild<frmWait *>();
            QVERIFY(w);
            Seen s;
            s.received = received;
            s.total = total;
            s.visible = w->isVisible();
            // What reached the screen, not what the widget would paint if asked.
            const QImage shot = w->screen()->grabWindow(w->winId()).toImage();
            s.textInk = DarkPixels(shot, w->lblProgress->geometry());
            s.shareInk = w->lblShare->isVisible() ? DarkPixels(shot, w->lblShare->geometry()) : 0;
            s.share = w->lblShare->isVisible() ? w->lblShare->text() : QString();
            s.ticks = ticks;
            seen.push_back(s);
        });

        // "Connect the logger, then OK", and the upload from its toolbar button.
        test::WhenModal([](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnOK->click(); });
        QTest::mouseClick(m->tbrToolbar->widgetForAction(m->Buttons[7]), Qt::LeftButton);

        QVERIFY2(seen.size() >= 10, qPrintable(QString::number(seen.size())));
        QCOMPARE(seen.back().received, seen.back().total);
        QVERIFY(seen.back().total > 4096);
        QCOMPARE(seen.back().share, ResString(3052) + QStringLiteral("100 %"));
        QStringList shares;
        for (size_t i = 0; i < seen.size(); ++i) {
            const Seen &s = seen[i];
            QVERIFY(s.visible);
            QVERIFY2(s.textInk > 20, qPrintable(QStringLiteral("blank text at %1").arg(i)));
            QCOMPARE(s.ticks, seen.front().ticks);
            if (i > 0) QVERIFY(s.received >= seen[i - 1].received);
            if (s.total == 0) continue;
            QVERIFY2(s.shareInk > 20, qPrintable(QStringLiteral("blank share at %1").arg(i)));
            if (shares.isEmpty() || shares.last() != s.share) shares << s.share;
        }
        QVERIFY2(shares.size() >= 5, qPrintable(shares.join(QLatin1Char(','))));

        // The wait is over, the window gone and the data the logger's.
        QVERIFY(!m->findChild<frmWait *>() || !m->findChild<frmWait *>()->isVisible());
        QVERIFY(ticks > seen.back().ticks);
        QCOMPARE(Data().DataCount, 571);  // (4096 - 96) / 7; sample for sample in the link's test

        test::CloseMain(m);
    }

    void importOpensTheViewsOnUnsavedData() {
        SetWritableDir(road_.path());
        QStringList args{"--fast", "--blocks", "3", "--records", "120", "--gap", "6"};
        if (test::MonthFirst()) args << QStringLiteral("--month-first");
        test::Simulator sim(road_.path(), args, QStringLiteral(FLUXMERE_SURVEYOR_SIM));
        QVERIFY(!sim.device.isEmpty());
        Data() = MeasurementData{};
        Warnings().clear();
        QVERIFY(StartUp(0, {}));
        frmMain *m = MainForm();
        QVERIFY(m);
        m->mnuSubFile[4]->trigger();
        QCOMPARE(Data().DataSource, QStringLiteral("Surveyor"));
        QCOMPARE(Data().DataCount, 120 + 6 + 120);
        QVERIFY(!Data().DataSaved);
        for (int b : {3, 4, 13, 14, 15}) QVERIFY(m->ButtonEnabled(b));
        // The data list and the time chart open on it without a fault.
        m->tbrToolbar_ButtonClick(15);
        m->tbrToolbar_ButtonClick(13);
        QVERIFY(Shared().SourceOpen);
        QVERIFY(Shared().GraphTeOpen);
        QCOMPARE(Data().DataDate(121), GeneralDate(DateAdd(QStringLiteral("n"), 120, Data().DataStart)));
        test::CloseMain(m);
    }

    void liveRunInTheViewer() {
        SetWritableDir(road_.path());
        test::Simulator sim(road_.path(), {"--fast"});
        QVERIFY(!sim.device.isEmpty());
        QVERIFY(StartUp(0, {}));
        frmMain *m = MainForm();
        QVERIFY(m);
        m->resize(1200, 800);
        QVERIFY(SelectPort(0));
        test::WhenModal(
            [](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnOK->click(); });  // "connect, then OK"
        QVERIFY(InitCommunication());
        SetLivePeriodForTests(250);  // longer than a reply takes on a busy machine: an overlap stops polling
        Options().Soglia = 0.5f;

        m->tbrToolbar_ButtonClick(9);
        frmView *view = m->findChild<frmView *>();
        QVERIFY(view);
        QVERIFY(view->Active());
        QVERIFY(!view->btnStopRealTime->isEnabled());
        // A scale button before any sample leaves the vector on the origin.
        view->MoltButton[3]->click();
        QCOMPARE(view->ScaleIndex, 3);
        QVERIFY(!view->MoltButton[0]->isChecked());
        QCOMPARE(view->Disegno->placement.vettore.length(), 0.0);

        // An earlier log: the question first; declining leaves it and starts nothing.
        test::WriteBytes(RealTimeLogPath(), "old");
        test::WhenModal([](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnCancel->click(); });
        view->btnStartRealTime->click();
        QCOMPARE(test::ReadBytes(RealTimeLogPath()), QByteArray("old"));
        QCOMPARE(Shared().LiveTimer, 0);

        view->chkBeeper->setChecked(true);
        test::WhenModal([](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnOK->click(); });
        view->btnStartRealTime->click();
        QVERIFY(view->btnStopRealTime->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(Live().RTCount >= 5, 20000);
        view->chkShowTrace[0]->setChecked(true);
        QTRY_VERIFY_WITH_TIMEOUT(Live().RTCount >= 8, 20000);
        QVERIFY(!view->teeRealEvolution->Active(0));
        QCOMPARE(view->teeRealEvolution->Count(0), view->teeRealEvolution->Count(3));  // hidden, still fed
        QVERIFY(view->teeRealEvolution->Logarithmic());
        QVERIFY(view->Pval[0]->text().startsWith(QStringLiteral("Bx = ")));
        QVERIFY(view->Disegno->caption.startsWith(QStringLiteral("B (")));
        QVERIFY(view->beeps > 0);  // the field stands above 0.5 µT
        QCOMPARE(m->Info->lblDataSource->text(), QStringLiteral("Real Time"));

        view->btnStopRealTime->click();
        QCOMPARE(Shared().LiveTimer, 0);
        QVERIFY(view->btnStartRealTime->isEnabled());
        const int count = Live().RTCount;
        QCOMPARE(m->Info->lblNumData->text(), QString::number(count));
        QCOMPARE(view->teeRealEvolution->Count(3), count);
        QVERIFY(LoadFile(RealTimeLogPath()));
        QCOMPARE(Data().DataCount, count);

        // The figures and the meters' scale ends read as their own digits, through a
        // change of range each way: 346.41 and 3.46, never the digits of a widened float.
        Live().RTSample = {0.165f, 2.45f, 3.0f, 0};
        QTest::mouseClick(view->MoltButton[2], Qt::LeftButton);
        QCOMPARE(view->Pval[0]->text(), QStringLiteral("Bx = 0.16 µT"));
        QCOMPARE(view->Pval[1]->text(), QStringLiteral("By = 2.4 µT"));
        QCOMPARE(view->VMStop[1]->text(), QStringLiteral("200 µT"));
        QCOMPARE(view->VMStop[3]->text(), QStringLiteral("346.41 µT"));
        QCOMPARE(view->Disegno->caption, QStringLiteral("B (0.16 : 2.4 : 3.0)"));
        Live().RTSample = {0.1f, 0.1f, 0.1f, 0};
        QTest::mouseClick(view->MoltButton[3], Qt::LeftButton);
        QCOMPARE(view->VMStop[1]->text(), QStringLiteral("2 µT"));
        QCOMPARE(view->VMStop[3]->text(), QStringLiteral("3.46 µT"));
        QCOMPARE(view->Pval[3]->text(), QStringLiteral("RSS  = 0.17 µT"));

        m->mdiArea->closeAllSubWindows();
        test::CloseMain(m);
    }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
