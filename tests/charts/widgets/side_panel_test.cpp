// The chart windows' side panels and the live window in both languages: every control
// has the room its text needs and none lies over another.
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "realtime/widgets/frm_view.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/view_window.h"
#include "support/modal.h"
#include "support/day_window.h"
#include "support/test_env.h"

#include <unistd.h>
#include <QGroupBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

namespace {
// Each visible child of `box` inside it and clear of its neighbours.
void CheckNoOverlap(QWidget *box, const QString &what) {
    QList<QWidget *> kids;
    for (QWidget *w : box->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        if (w->isVisible()) kids << w;
    QVERIFY2(!kids.isEmpty(), qPrintable(what));
    for (int i = 0; i < kids.size(); ++i) {
        const QRect a = kids[i]->geometry();
        QVERIFY2(box->rect().contains(a),
                 qPrintable(what + QStringLiteral(": cut ") + kids[i]->metaObject()->className()));
        QVERIFY2(a.width() >= kids[i]->minimumSizeHint().width(),
                 qPrintable(what + QStringLiteral(": narrow ") + kids[i]->metaObject()->className()));
        for (int j = i + 1; j < kids.size(); ++j)
            QVERIFY2(!a.intersects(kids[j]->geometry()),
                     qPrintable(what + QStringLiteral(": ") + kids[i]->metaObject()->className() +
                                QStringLiteral(" over ") + kids[j]->metaObject()->className()));
    }
}
}  // namespace

class SidePanelTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    frmMain *main_ = nullptr;

    void CheckChart(QWidget *form, const QString &what) {
        auto *scroll = form->findChild<QScrollArea *>(QStringLiteral("sideScroll"));
        QVERIFY2(scroll, qPrintable(what));
        auto *panel = scroll->widget()->findChild<QGroupBox *>();
        QVERIFY(panel);
        const QSize need = panel->minimumSizeHint();
        QVERIFY2(panel->width() >= need.width(), qPrintable(what + QStringLiteral(" width")));
        QVERIFY2(panel->height() >= need.height(), qPrintable(what + QStringLiteral(" height")));
        // The panel stays whole in its window: no text of it runs under the window's edge.
        QVERIFY(form->rect().contains(scroll->geometry()));
        CheckNoOverlap(panel, what);
    }

private slots:
    void initTestCase() {
        main_ = test::StartOnDayLog(dir_.path(), &pty_, {1280, 800});
        QVERIFY(main_);
    }
    void cleanupTestCase() {
        test::CloseMain(main_);
        ::close(pty_);
    }

    void panelsFitInBothLanguages() {
        for (int language : {0, 1}) {
            SetLanguage(language);
            main_->mdiArea->closeAllSubWindows();
            QTest::qWait(20);
            const QString in = language == 0 ? QStringLiteral(" (it)") : QStringLiteral(" (en)");
            QMdiSubWindow *te = ShowGraphTe(), *st = ShowGraphSt();
            QMdiSubWindow *rf = AddView(new frmGraphRf, 9, QSize(760, 460));
            QVERIFY(te && st && rf);
            // Also a window made small by the user: the panel scrolls, nothing is pressed together.
            st->resize(300, 200);
            QTest::qWait(20);
            CheckChart(te->widget(), QStringLiteral("time chart") + in);
            CheckChart(st->widget(), QStringLiteral("statistics chart") + in);
            CheckChart(rf->widget(), QStringLiteral("RF chart") + in);
            test::Snapshot(st, QStringLiteral("side_panel_small") + in.trimmed());
        }
        SetLanguage(1);
    }

    void liveViewOpensLargeEnoughToUse() {
        main_->mdiArea->closeAllSubWindows();
        QTest::qWait(20);
        QMdiSubWindow *w = ShowRealTimeView();
        QVERIFY(w);
        QTest::qWait(20);
        auto *view = qobject_cast<frmView *>(w->widget());
        QVERIFY(view);
        QVERIFY2(
            view->Disegno->width() >= 300 && view->Disegno->height() >= 300,
            qPrintable(QStringLiteral("%1x%2").arg(view->Disegno->width()).arg(view->Disegno->height())));
        QVERIFY(main_->mdiArea->rect().contains(w->geometry()));
        CheckNoOverlap(view, QStringLiteral("live view"));
        for (auto *box : view->findChildren<QGroupBox *>()) CheckNoOverlap(box, box->title());
        test::Snapshot(w, QStringLiteral("live_view"));
        w->close();
    }
};

QTEST_MAIN(SidePanelTest)
#include "side_panel_test.moc"
