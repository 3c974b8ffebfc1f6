// The main window as a user meets it: start-up with and without a file, the toolbar
// and menus, the warnings and info windows, the file dialogs and the way out.
#include "analysis/warnings.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "realtime/realtime_log.h"
#include "shell/widgets/frm_about.h"
#include "shell/widgets/frm_date.h"
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/frm_warnings.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <QAction>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace fm;

class MainWindowTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    QString log_;
    int pty_ = -1;  // "Com 1" of the tests: a pseudo-terminal nobody answers on

    frmMain *Start(const QStringList &args = {}) {
        Data() = MeasurementData{};
        Warnings().clear();
        return StartUp(0, args) ? MainForm() : nullptr;
    }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
        log_ = dir_.filePath(QStringLiteral("five.log"));
        test::WriteBytes(
            log_, test::LogText({"Field Activity Log", "14/10/2026 08:00:00@14/10/2026 08:05:00@3", "1n", "5",
                                 "QL540-0042", "Cabina 3", "0.10 0.20 0.30  0", "0.50 0.50 0.50  0",
                                 "-1 -1 -1 0", "1.00 0.00 0.00  0", "0.20 0.20 0.20  0"}));
    }
    void cleanup() {
        CommonDialog::SetResponder(nullptr);
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
        QCOMPARE(m->mnuFile->title(), ResString(4100));
        QCOMPARE(m->Info->lblNumData->text(), QStringLiteral("---"));
        QCOMPARE(m->lblCommStatus->text(), ResString(3042));  // "Com 1" opened at start
        QVERIFY(m->mnuSubSubMonitor[0]->isChecked());
        emit m->mnuMonitor->aboutToShow();
        QVERIFY(m->mnuSubMonitor[7]->isEnabled());
        QVERIFY(!m->mnuSubMonitor[2]->isVisible());
        QCOMPARE(m->windowTitle(), ResString(4037));
        test::Snapshot(m, QStringLiteral("main_empty"));
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
        m->resize(1100, 700);
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
            test::Snapshot(box, QStringLiteral("message_box"));
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
        test::WriteBytes(path, "\"Field Activity Log\"\r\n\"14/10/2026 08:00:00\"\r\n\" 3s\"\r\n          \r\n"
                               "\"CAB\"\r\n\"Via Po\"\r\n\"0.10 0.20 0.30  0\"\r\n\"0.40 0.50 0.60  0\"\r\n\"0.7");
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
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
