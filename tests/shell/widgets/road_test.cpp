// The main window against the simulators on a pseudo-terminal. A technician's day, driven
// with the mouse: open a log, open the three views, connect, program a session with today's
// date, upload, look at the chart and click a point. The upload's wait window at the
// line's own rate, the Surveyor import from the File menu, and a live run in the viewer.
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
#include "shell/widgets/frm_info.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/frm_wait.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>

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
    void initTestCase() { SetWritableDir(dir_.path()); }

    void theWholeDay() {
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
        // 4096 bytes at 1920 bytes a second: two seconds of reply.
        test::Simulator sim(dir_.path(), {"--memory", "4096"});
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
        QStringList args{"--fast", "--blocks", "3", "--records", "120", "--gap", "6"};
        if (test::MonthFirst()) args << QStringLiteral("--month-first");
        test::Simulator sim(dir_.path(), args, QStringLiteral(FLUXMERE_SURVEYOR_SIM));
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

QTEST_MAIN(RoadTest)
#include "road_test.moc"
