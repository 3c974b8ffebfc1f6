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
#include "support/modal.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

using namespace fm;

class MonitorDialogsTest : public QObject {
    Q_OBJECT
    test::Fresh *fresh_ = nullptr;
    test::RecorderHost *host_ = nullptr;
    QProcess sim_;

private slots:
    void init() {
        fresh_ = new test::Fresh(1);
        host_ = new test::RecorderHost;
        host_->defaultAnswer = true;
        SetWritableDir(fresh_->Dir().path());
        sim_.start(QStringLiteral(FLUXMERE_SIM), {QStringLiteral("--fast"), QStringLiteral("--link"),
                                                  fresh_->Path(QStringLiteral("com1"))});
        QVERIFY(sim_.waitForReadyRead(5000));
        InstallLinkHandlers();
        QVERIFY(SelectPort(0));
    }
    void cleanup() {
        DropCommunication();
        Seriale().SetPortOpen(false);
        sim_.terminate();
        sim_.waitForFinished(2000);
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
        test::Snapshot(&dlg, QStringLiteral("id_code"));
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
        test::Snapshot(&dlg, QStringLiteral("monitor_settings"));

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
        dlg.btnStopMonitor_Click();
        QCOMPARE(dlg.lblStatus->text(), QStringLiteral("TERMINATO (STOP UTENTE)"));
        QCOMPARE(Shared().MonitorState, int16_t(0));
        // The logger's clock holds 2012 to 2015: with today's date the start is refused by the fault box.
        dlg.optStopDate[0]->setChecked(true);
        QTimer::singleShot(400, &dlg, [&dlg] { dlg.btnClose->click(); });
        dlg.btnStartMonitor_Click();
        QVERIFY(host_->LastBox().contains(QStringLiteral("StartMonitoraggio")));
        QCOMPARE(Shared().MonitorState, int16_t(0));
    }
};

QTEST_MAIN(MonitorDialogsTest)
#include "monitor_dialogs_test.moc"
