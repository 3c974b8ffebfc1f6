// The views after new data, as a person meets them: a second file opened from the menu,
// a recent file, two files on the command line, the views the options ask for, and a
// load that fails half-way under an open list.
#include "analysis/warnings.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "shell/data_list.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/modal.h"
#include "support/day_window.h"
#include "support/test_env.h"

#include <unistd.h>
#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>

using namespace fm;

class ViewsTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    QString first_, second_, third_, broken_;
    int shot_ = 0;

    static void WriteOptions(bool te, bool st, bool source) {
        OptionsRecord o = OptionsRecord::Defaults();
        o.OpenGraphTe = te;
        o.OpenGraphSt = st;
        o.OpenSource = source;
        o.ShowWarnings = false;
        o.FirstRun = false;
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
    // The main window after each step, for a person to look at.
    void Shot(frmMain *m, const char *step) {
        test::Snapshot(
            m, QStringLiteral("views_%1_%2").arg(++shot_, 2, 10, QLatin1Char('0')).arg(QLatin1String(step)));
    }
    // The view windows standing open, by their button; a window closed and waiting to be
    // deleted is not among them.
    template <class Form>
    static Form *Shown(frmMain *m) { return test::Shown<Form>(m); }
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
        test::CloseMain(MainForm());
    }
    void cleanupTestCase() { ::close(pty_); }

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
        Shot(m, "three_views");

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
        Shot(m, "after_second_file");

        // A recent file from button 2's drop-down does the same.
        m->ButtonMenus->actions().at(1)->trigger();  // first.log, behind second.log
        QCOMPARE(Data().DataFile, first_);
        open = Open(m);
        QCOMPARE(open.size(), size_t(3));
        for (auto &[b, w] : open) QCOMPARE(w->geometry(), where.at(b));
        QCOMPARE(Shown<frmGraphTe>(m)->teeEvolution->Count(3), 144);
        Shot(m, "after_recent_file");

        // A view the person closed stays closed.
        open.at(14)->close();
        test::OpenFromMenu(m, third_);
        open = Open(m);
        QCOMPARE(open.size(), size_t(2));
        QVERIFY(!open.count(14) && !Shared().GraphStOpen);
        QCOMPARE(open.at(13)->geometry(), where.at(13));
        Shot(m, "statistics_closed");
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
        Shot(m, "options_statistics");
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
        Shot(m, "command_line_two_files");
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
        Shot(m, "value_order_before_failure");

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
        Shot(m, "value_order_after_failure");
    }
};

QTEST_MAIN(ViewsTest)
#include "views_test.moc"
