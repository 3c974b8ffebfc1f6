// The data list as text a user can take away: lines selected with the mouse and the
// keys, copied as the saved list writes them; the editing keys of the box with the focus
// before the menus' shortcuts; the date column in line whatever the hour.
#include "charts/widgets/frm_graph_st.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "shell/data_list.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/day_window.h"
#include "support/test_env.h"

#include <unistd.h>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

class ListTextTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    frmMain *main_ = nullptr;
    SourceView *view_ = nullptr;

    // Lines first..last of the list saved as text, each closed by "\n".
    QString Saved(int first, int last) {
        const QStringList lines =
            QString::fromLatin1(view_->List()->PlainText()).split(QStringLiteral("\r\n"));
        QString out;
        for (int i = first; i <= last; ++i) out += lines[i] + QLatin1Char('\n');
        return out;
    }
    QPoint At(int64_t line) {
        const int h = view_->fontMetrics().lineSpacing();
        return {40, int(line - view_->verticalScrollBar()->value()) * h + h / 2};
    }
    void Drag(int64_t from, int64_t to) {
        QWidget *vp = view_->viewport();
        QTest::mousePress(vp, Qt::LeftButton, {}, At(from));
        QMouseEvent move(QEvent::MouseMove, At(to), vp->mapToGlobal(At(to)), Qt::NoButton, Qt::LeftButton,
                         {});
        QApplication::sendEvent(vp, &move);
        QTest::mouseRelease(vp, Qt::LeftButton, {}, At(to));
    }
    void Key(QWidget *w, Qt::Key key, Qt::KeyboardModifiers mods = {}) { QTest::keyClick(w, key, mods); }

private slots:
    void initTestCase() {
        main_ = test::StartOnDayLog(dir_.path(), &pty_, {1200, 860});
        QVERIFY(main_);
        main_->show();
        QMdiSubWindow *w = ViewDataSource(true);
        QVERIFY(w);
        view_ = qobject_cast<frmSource *>(w->widget())->txtSource;
        QVERIFY(QTest::qWaitForWindowExposed(main_));
    }
    void cleanupTestCase() {
        test::CloseMain(main_);
        ::close(pty_);
    }

    void mouseSelectsAndCopiesSavedLines() {
        const int first = view_->List()->HeadingLines();
        Drag(first + 5, first + 2);  // upwards too
        QCOMPARE(view_->SelectionStart(), int64_t(first + 2));
        QCOMPARE(view_->SelectionEnd(), int64_t(first + 5));
        QVERIFY(view_->Copy());
        QCOMPARE(QGuiApplication::clipboard()->text(), Saved(first + 2, first + 5));
        // Shift+click extends from the anchor.
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, At(first));
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, Qt::ShiftModifier, At(first + 3));
        QCOMPARE(view_->SelectionStart(), int64_t(first));
        QCOMPARE(view_->SelectionEnd(), int64_t(first + 3));
        // A click on the last whole line in sight selects it where it stands.
        view_->verticalScrollBar()->setValue(0);
        const int64_t bottom = view_->verticalScrollBar()->pageStep() - 1;
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, At(bottom));
        QCOMPARE(view_->CurrentLine(), bottom);
        QCOMPARE(view_->verticalScrollBar()->value(), 0);
    }

    void keysSelectAndCopyBeforeTheMenus() {
        QSignalSpy dock(main_->mnuSubWindow[1], &QAction::triggered);
        QSignalSpy idCode(main_->mnuSubMonitor[4], &QAction::triggered);
        view_->setFocus();
        view_->SelectLine(3);
        Key(view_, Qt::Key_Down, Qt::ShiftModifier);
        Key(view_, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(view_->SelectionStart(), int64_t(3));
        QCOMPARE(view_->SelectionEnd(), int64_t(5));
        Key(view_, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), Saved(3, 5));
        const int page = view_->verticalScrollBar()->pageStep();
        Key(view_, Qt::Key_PageDown, Qt::ShiftModifier);
        QCOMPARE(view_->SelectionEnd(), int64_t(5 + page));
        Key(view_, Qt::Key_PageUp, Qt::ShiftModifier);
        QCOMPARE(view_->SelectionEnd(), int64_t(5));
        for (int i = 0; i < 3; ++i) Key(view_, Qt::Key_Up, Qt::ShiftModifier);  // past the anchor
        QCOMPARE(view_->SelectionStart(), int64_t(2));
        QCOMPARE(view_->SelectionEnd(), int64_t(3));
        Key(view_, Qt::Key_Down);  // a plain move drops the selection
        QCOMPARE(view_->SelectionStart(), view_->SelectionEnd());
        Key(view_, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(view_->SelectionStart(), int64_t(0));
        QCOMPARE(view_->SelectionEnd(), view_->List()->LineCount() - 1);
        Key(view_, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text().toLatin1().replace('\n', "\r\n"),
                 view_->List()->PlainText());
        QCOMPARE(dock.count(), 0);
        QCOMPARE(idCode.count(), 0);
    }

    void contextMenuCopiesAndSelectsAll() {
        view_->SelectLine(view_->List()->HeadingLines());
        std::unique_ptr<QMenu> menu(view_->MakeMenu());
        const QList<QAction *> acts = menu->actions();
        QCOMPARE(acts.size(), 2);
        QCOMPARE(acts[0]->text(), ResString(4420));
        QCOMPARE(acts[1]->text(), ResString(4421));
        QGuiApplication::clipboard()->clear();
        acts[0]->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 Saved(view_->List()->HeadingLines(), view_->List()->HeadingLines()));
        acts[1]->trigger();
        QCOMPARE(view_->SelectionEnd() - view_->SelectionStart() + 1, view_->List()->LineCount());
    }

    void editBoxKeepsItsKeysMenusKeepTheRest() {
        QMdiSubWindow *w = ShowGraphSt();
        QVERIFY(w);
        auto *st = qobject_cast<frmGraphSt *>(w->widget());
        QSignalSpy idCode(main_->mnuSubMonitor[4], &QAction::triggered);
        QSignalSpy dock(main_->mnuSubWindow[1], &QAction::triggered);
        QLineEdit *box = st->txtMinValue;
        box->setText(QStringLiteral("12.5"));
        box->setFocus();
        QGuiApplication::clipboard()->clear();
        Key(box, Qt::Key_A, Qt::ControlModifier);
        Key(box, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("12.5"));
        QCOMPARE(idCode.count(), 0);
        QCOMPARE(dock.count(), 0);
        // Away from text the menu's shortcut works as before.
        st->btnRefresh->setFocus();
        Key(st->btnRefresh, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(dock.count(), 1);
        w->close();
    }

    // Under en_US the hours run "9:50:00 AM", "10:00:00 AM", "12:00:00 AM": the view pads
    // the date column so the figures stand in line; the saved text keeps its own widths.
    void dateColumnStaysInLine() {
        if (LongTimeFormat().startsWith(QLatin1Char('H')) ||
            LongTimeFormat().startsWith(QStringLiteral("hh")))
            QSKIP("hours of two digits in this locale");
        const DataList *list = view_->List();
        QSet<qsizetype> shown, saved;
        for (int64_t i = list->HeadingLines(); i < list->LineCount(); ++i) {
            QString padded;
            list->AppendPaddedLine(i, padded);
            shown << padded.size();
            saved << list->Line(i).size();
            QVERIFY(padded.startsWith(list->Line(i).left(list->DateWidth()).trimmed()));
        }
        QCOMPARE(shown.size(), 1);
        QVERIFY2(saved.size() > 1, "the test wants hours of one and of two digits");
    }
};

QTEST_MAIN(ListTextTest)
#include "list_text_test.moc"
