// The real-time viewer against the simulator: the question before replacing a log,
// samples on the drawing, meters, strip chart and panel, the scale buttons, hidden
// traces, the alarm, and the stop.
#include "charts/widgets/chart_control.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "files/log_file.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "realtime/live_mode.h"
#include "realtime/live_record.h"
#include "realtime/realtime_log.h"
#include "realtime/widgets/frm_view.h"
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/main_entry.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <QCheckBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

class ViewTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

private slots:
    void liveRunInTheViewer() {
        SetWritableDir(dir_.path());
        test::Simulator sim(dir_.path(), {"--fast"});
        QVERIFY(!sim.device.isEmpty());
        QVERIFY(StartUp(0, {}));
        frmMain *m = MainForm();
        QVERIFY(m);
        m->resize(1200, 800);
        QVERIFY(SelectPort(0));
        test::WhenModal(
            [](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnOK->click(); });  // "connect, then OK"
        QVERIFY(InitCommunication());
        SetLivePeriodForTests(60);
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
        QTRY_VERIFY_WITH_TIMEOUT(Live().RTCount >= 8, 20000);
        view->chkShowTrace[0]->setChecked(true);
        QTRY_VERIFY_WITH_TIMEOUT(Live().RTCount >= 12, 20000);
        QVERIFY(!view->teeRealEvolution->Active(0));
        QCOMPARE(view->teeRealEvolution->Count(0), view->teeRealEvolution->Count(3));  // hidden, still fed
        QVERIFY(view->teeRealEvolution->Logarithmic());
        QVERIFY(view->Pval[0]->text().startsWith(QStringLiteral("Bx = ")));
        QVERIFY(view->Disegno->caption.startsWith(QStringLiteral("B (")));
        QVERIFY(view->beeps > 0);  // the field stands above 0.5 µT
        QCOMPARE(m->Info->lblDataSource->text(), QStringLiteral("Real Time"));
        view->resize(900, 620);
        test::Snapshot(view, QStringLiteral("live_view"));

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
        test::Snapshot(view, QStringLiteral("live_view_ranges"));

        m->mdiArea->closeAllSubWindows();
        test::CloseMain(m);
    }
};

QTEST_MAIN(ViewTest)
#include "view_test.moc"
