// The session and identification dialogs against the simulator, as a user drives them.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "link/link_state.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/transaction.h"
#include "monitor/widgets/frm_id_code.h"
#include "monitor/widgets/frm_monitor.h"
#include "shell/link_handlers.h"
#include "acquisition/upload.h"
#include "link/operations.h"
#include "support/modal.h"
#include "support/recorder_host.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <QCalendarWidget>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTableView>
#include <QTest>
#include <QToolButton>

using namespace fm;

class MonitorDialogsTest : public QObject {
    Q_OBJECT
    test::Fresh *fresh_ = nullptr;
    test::RecorderHost *host_ = nullptr;
    test::Simulator *sim_ = nullptr;

    // Once the progress page waits for Close: `look` sees the page as it is, then Close is clicked.
    void CloseWhenAsked(frmMonitor &dlg, std::function<void()> look) {
        auto *poll = new QTimer(&dlg);
        connect(poll, &QTimer::timeout, &dlg, [&dlg, look, poll] {
            if (!dlg.btnClose->isEnabled() || !dlg.btnClose->isVisible()) return;
            poll->stop();
            look();
            QTest::mouseClick(dlg.btnClose, Qt::LeftButton);
            poll->deleteLater();
        });
        poll->start(20);
    }

private slots:
    void init() {
        fresh_ = new test::Fresh(1);
        host_ = new test::RecorderHost;
        host_->defaultAnswer = true;
        sim_ = new test::Simulator(fresh_->Dir().path(), {QStringLiteral("--fast")});
        QVERIFY(!sim_->device.isEmpty());
        InstallLinkHandlers();
        QVERIFY(SelectPort(0));
    }
    void cleanup() {
        DropCommunication();
        Seriale().SetPortOpen(false);
        delete sim_;
        delete host_;
        delete fresh_;
    }

    void identificationCodes() {
        frmIDCode dlg(nullptr);
        dlg.show();
        dlg.Load();
        QCOMPARE(dlg.txtIDShort->text(), QStringLiteral("QL540-SIM"));  // trailing blanks gone
        dlg.txtIDShort->clear();
        QTest::keyClicks(dlg.txtIDShort, QStringLiteral("AB\"C"));
        QCOMPARE(dlg.txtIDShort->text(), QStringLiteral("ABC"));  // a quote cannot be typed
        dlg.txtIDLong->setText(QString(49, QLatin1Char('x')));
        dlg.btnWriteID_Click();
        QCOMPARE(host_->LastBox(), ResString(28) + QStringLiteral("(Max 48)"));
        QVERIFY(Data().ShortID.trimmed() != QStringLiteral("ABC"));  // nothing changed
        dlg.txtIDLong->setText(QString(48, QLatin1Char('y')));
        dlg.btnWriteID_Click();
        dlg.txtIDShort->clear();
        dlg.Load();
        QCOMPARE(dlg.txtIDShort->text(), QStringLiteral("ABC"));
        QCOMPARE(dlg.txtIDLong->text(), QString(48, QLatin1Char('y')));
    }

    void sessionDialogReadsAndChecks() {
        Options().MemorySize = 65536;
        Options().WarnOnDate = true;
        frmMonitor dlg(nullptr);
        dlg.show();
        dlg.Load();
        QCOMPARE(dlg.lblStatus->text(), QStringLiteral("TERMINATO (FINE MEMORIA)"));
        QVERIFY(dlg.btnStartMonitor->isEnabled());
        QVERIFY(!dlg.btnStopMonitor->isEnabled());
        QCOMPARE(dlg.txtStepSize->text(), QStringLiteral("10"));
        QCOMPARE(dlg.cboStepResolution->currentData().toInt(), 3);  // minutes
        for (const test::Box &b : host_->boxes) QVERIFY(b.text != ResString(36));  // no date warning while filling

        // Minutes with step 5 turned to seconds become 10, and the up-down moves in tens.
        dlg.txtStepSize->setText(QStringLiteral("5"));
        dlg.cboStepResolution->setCurrentIndex(0);
        emit dlg.cboStepResolution->activated(0);
        QCOMPARE(dlg.txtStepSize->text(), QStringLiteral("10"));
        dlg.updUp->click();
        QCOMPARE(dlg.txtStepSize->text(), QStringLiteral("20"));

        // A stop date beyond the memory is pulled back, with the warning the options ask for.
        dlg.optStopDate[1]->setChecked(true);
        dlg.ShowGroupDate(1, DateAdd(QStringLiteral("d"), 400, Now()));
        dlg.AutoCalculateDate();
        double start = 0, stop = 0;
        QVERIFY(dlg.GroupDate(0, &start) && dlg.GroupDate(1, &stop));
        QVERIFY(stop <= DateAdd(QStringLiteral("s"), 9349.0 * 20, start) + 1.0 / 86400);
        QCOMPARE(host_->LastBox(), ResString(36));

        // The refusals: no unit, a step under 10 s, a start in the past, a stop before the start.
        dlg.cboStepResolution->setCurrentIndex(-1);
        dlg.btnStartMonitor_Click();
        QCOMPARE(host_->LastBox(), ResString(9));
        dlg.cboStepResolution->setCurrentIndex(0);
        dlg.txtStepSize->setText(QStringLiteral("5"));
        dlg.btnStartMonitor_Click();
        QCOMPARE(host_->LastBox(), ResString(10));
        dlg.txtStepSize->setText(QStringLiteral("30"));
        dlg.optStartDate[1]->setChecked(true);
        dlg.ShowGroupDate(0, DateAdd(QStringLiteral("d"), -2, Now()));
        dlg.btnStartMonitor_Click();
        QCOMPARE(host_->LastBox(), ResString(11));
        dlg.optStartDate[0]->setChecked(true);
        dlg.optStopDate[1]->setChecked(true);
        dlg.ShowGroupDate(1, DateAdd(QStringLiteral("d"), -2, Now()));
        dlg.btnStartMonitor_Click();
        QCOMPARE(host_->LastBox(), ResString(12));
    }

    void startAndStopASession() {
        frmMonitor dlg(nullptr);
        dlg.show();
        dlg.Load();
        dlg.btnStopMonitor->setEnabled(true);
        QTest::mouseClick(dlg.btnStopMonitor, Qt::LeftButton);
        QCOMPARE(dlg.lblStatus->text(), QStringLiteral("TERMINATO (STOP UTENTE)"));
        QCOMPARE(Shared().MonitorState, int16_t(0));
        // Today's date goes on the wire whatever the year.
        dlg.optStopDate[0]->setChecked(true);
        int ticked = 0;
        CloseWhenAsked(dlg, [&] {
            for (QLabel *l : dlg.imgStatus) ticked += l->pixmap().isNull() ? 0 : 1;
        });
        QTest::mouseClick(dlg.btnStartMonitor, Qt::LeftButton);
        QCOMPARE(ticked, 4);
        QCOMPARE(dlg.pages->currentWidget(), dlg.fmeMonitor);
        QCOMPARE(dlg.lblStatus->text(), ResString(3010));
        QVERIFY(dlg.btnStopMonitor->isEnabled());
        QCOMPARE(Shared().MonitorState, int16_t(1));
        QVERIFY(!Shared().CommOpen);  // the logger works alone now
        // Read back, the session started today.
        dlg.Load();
        double start = 0;
        QVERIFY(dlg.GroupDate(0, &start));
        QCOMPARE(std::floor(start), std::floor(Now()));
    }

    void failedStartRecovers_data() {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("step");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("message");
        QTest::newRow("session block refused") << "fault refuse 12" << "10" << 1 << ResString(4340);
        QTest::newRow("reply to the start lost") << "fault no-answer 13" << "10" << 3 << ResString(3029);
        QTest::newRow("step over 99") << "fault none" << "100" << 1 << "StartMonitoraggio";
    }
    void failedStartRecovers() {
        QFETCH(QString, fault);
        QFETCH(QString, step);
        QFETCH(int, line);
        QFETCH(QString, message);
        frmMonitor dlg(nullptr);
        dlg.show();
        dlg.Load();
        sim_->Say(fault);
        dlg.txtStepSize->selectAll();
        QTest::keyClicks(dlg.txtStepSize, step);
        dlg.optStopDate[0]->setChecked(true);
        bool waited = false, marked = false, onProgress = false, keepAlive = false;
        QString shown;
        CloseWhenAsked(dlg, [&] {
            waited = true;
            onProgress = dlg.pages->currentWidget() == dlg.fmeProgress;
            marked = dlg.lblText[size_t(line)]->styleSheet().contains(QStringLiteral("red")) &&
                     !dlg.imgStatus[size_t(line)]->pixmap().isNull();
            keepAlive = Shared().KeepAliveTimer != 0 && Shared().CommOpen;
            shown = host_->commText + QLatin1Char('|') + host_->LastBox();
        });
        QTest::mouseClick(dlg.btnStartMonitor, Qt::LeftButton);
        QVERIFY(waited);  // Close was enabled
        QVERIFY(onProgress);
        QVERIFY(marked);
        QVERIFY(keepAlive);
        QVERIFY2(shown.contains(message), qPrintable(shown));
        QCOMPARE(dlg.pages->currentWidget(), dlg.fmeMonitor);
        QVERIFY(dlg.btnStartMonitor->isEnabled());
        QCOMPARE(Shared().MonitorState, int16_t(0));
        // The link is still there: the dialog reads the settings again.
        sim_->Say(QStringLiteral("fault none"));
        QTest::mouseClick(dlg.btnReadSettings, Qt::LeftButton);
        QCOMPARE(host_->commText, QStringLiteral("Last Command OK"));
    }

    void unitRulesApplyToTheLoggersSettings() {
        // Another tool left a session of 5 seconds in the logger.
        class Quiet : public StartProgress {
            void Begin() override {}
            void SetState(int) override {}
            void MarkFailed(int) override {}
            void WaitForClose() override {}
            void End(bool) override {}
        } quiet;
        QVERIFY(InitCommunication());
        Link().MonitorImage = {2, 0x05, 0, 0, 0, 0, 0, 0, 0, 0};
        QVERIFY(StartMonitoraggio(quiet));
        frmMonitor dlg(nullptr);
        dlg.show();
        dlg.Load();
        QCOMPARE(dlg.cboStepResolution->currentData().toInt(), 2);
        QCOMPARE(dlg.txtStepSize->text(), QStringLiteral("10"));
        QTest::mouseClick(dlg.updUp, Qt::LeftButton);
        QCOMPARE(dlg.txtStepSize->text(), QStringLiteral("20"));
    }

    void calendarOpensWholeOnScreen() {
        frmMonitor dlg(nullptr);
        dlg.show();
        dlg.Load();
        dlg.optStartDate[1]->setChecked(true);
        dlg.optStopDate[1]->setChecked(true);
        // In the corner of the screen, where a calendar under a button has no room.
        const QRect room = dlg.screen()->availableGeometry();
        dlg.move(room.right() - dlg.frameGeometry().width(), room.bottom() - dlg.frameGeometry().height());
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        for (const int group : {1, 0}) {
            QTest::mouseClick(dlg.btnDate[size_t(group)], Qt::LeftButton);
            QVERIFY(dlg.monDate->isVisible());
            QVERIFY(dlg.monDate->isWindow());
            QVERIFY(dlg.monDate->width() >= dlg.monDate->sizeHint().width());
            QVERIFY(dlg.monDate->height() >= dlg.monDate->sizeHint().height());
            QVERIFY(room.contains(dlg.monDate->frameGeometry()));
            if (group == 1) {
                test::Snapshot(dlg.monDate, QStringLiteral("monitor_calendar"));
                QTest::mouseClick(dlg.btnDate[1], Qt::LeftButton);  // the same button closes it
                QVERIFY(!dlg.monDate->isVisible());
            }
        }
        // A click on the 15th of the month on show takes it as the start.
        auto *view = dlg.monDate->findChild<QTableView *>();
        QVERIFY(view);
        QModelIndex fifteenth;
        for (int r = 1; r < view->model()->rowCount(); ++r)
            for (int c = 1; c < view->model()->columnCount(); ++c)  // column 0: week numbers
                if (view->model()->index(r, c).data().toString() == QStringLiteral("15"))
                    fifteenth = view->model()->index(r, c);
        QVERIFY(fifteenth.isValid());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(fifteenth).center());
        QVERIFY(!dlg.monDate->isVisible());
        QCOMPARE(dlg.lblDate[0]->text(),
                 ShortDate(DateFromParts(dlg.monDate->yearShown(), dlg.monDate->monthShown(), 15)));
    }

    void codesTravelInWindows1252() {
        frmIDCode dlg(nullptr);
        dlg.show();
        dlg.Load();
        const QString shortId = QStringLiteral("Caf\u20AC 5"), longId = QStringLiteral("\u201CVia\u201D Po \u2018A\u2019 \u2013 m\u00B2");
        // Typed key by key with the text each key gives, as a keyboard with these signs would.
        for (const auto &[box, text] : {std::pair{dlg.txtIDShort, shortId}, std::pair{dlg.txtIDLong, longId}}) {
            box->selectAll();
            for (const QChar c : text) QTest::sendKeyEvent(QTest::Click, box, Qt::Key_unknown, QString(c), {});
        }
        QTest::mouseClick(dlg.btnWriteID, Qt::LeftButton);
        dlg.txtIDShort->clear();
        dlg.txtIDLong->clear();
        QTest::mouseClick(dlg.btnReadID, Qt::LeftButton);
        QCOMPARE(dlg.txtIDShort->text(), shortId);
        QCOMPARE(dlg.txtIDLong->text(), longId);
        // The upload's header reads the same codes.
        QVERIFY(UploadData());
        QCOMPARE(Data().ShortID.trimmed(), shortId);
        QCOMPARE(Data().LongID.trimmed(), longId);
    }
};

QTEST_MAIN(MonitorDialogsTest)
#include "monitor_dialogs_test.moc"
