// A technician's day at the main window, driven with the mouse against the simulated logger:
// open a log, open the three views, connect, program a session with today's date, upload,
// look at the chart and click a point. The window is rendered after each step.
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "link/link_state.h"
#include "monitor/widgets/frm_monitor.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QTimer>

using namespace fm;

class RoadTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
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

private slots:
    void theWholeDay() {
        SetWritableDir(dir_.path());
        test::Simulator sim(dir_.path(), {"--fast", "--memory", "8192"});
        QVERIFY(!sim.device.isEmpty());
        const QString log = dir_.filePath(QStringLiteral("day.log"));
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
        test::Snapshot(m, QStringLiteral("road_1_log_open"));

        // The three views from the toolbar.
        for (int b : {13, 14, 15}) Press(m, b);
        QCOMPARE(OpenViews(m), Views());
        test::Snapshot(m, QStringLiteral("road_2_views"));

        // Connect: the link comes up after the question.
        Press(m, 6);
        QTRY_VERIFY(Shared().CommOpen);
        QVERIFY(!asked_.isEmpty());
        test::Snapshot(m, QStringLiteral("road_3_connected"));

        // Program a session that starts now and runs until the memory is full.
        bool started = false;
        auto *poll = new QTimer(m);
        connect(poll, &QTimer::timeout, m, [&, poll] {
            auto *dlg = qobject_cast<frmMonitor *>(QApplication::activeModalWidget());
            if (!dlg) return;  // still reading the logger's settings
            poll->stop();
            QTest::mouseClick(dlg->optStartDate[0], Qt::LeftButton);
            QTest::mouseClick(dlg->optStopDate[0], Qt::LeftButton);
            test::Snapshot(dlg, QStringLiteral("road_4_session_dialog"));
            // The start waits for Close on its page of steps.
            auto *closer = new QTimer(dlg);
            connect(closer, &QTimer::timeout, dlg, [dlg, closer] {
                if (!dlg->btnClose->isVisible() || !dlg->btnClose->isEnabled()) return;
                closer->stop();
                test::Snapshot(dlg, QStringLiteral("road_4_session_started"));
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
        test::Snapshot(m, QStringLiteral("road_5_uploaded"));

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
};

QTEST_MAIN(RoadTest)
#include "road_test.moc"
