// The main window on a day's log. The data list as text a user can take away: lines
// selected with the mouse and the keys, copied as the saved list writes them; the editing
// keys of the box with the focus before the menus' shortcuts; the date column in line
// whatever the hour. The statistics chart as a user meets it, and the chart images: JPEG
// and the metafile, which an independent reader (libwmf's wmf2svg) must show as drawn.
// Then the chart windows' side panels and the live window in both languages: every
// control has the room its text needs and none lies over another.
#include "analysis/statistics.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_image.h"
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_st.h"
#include "charts/widgets/frm_graph_te.h"
#include "charts/widgets/wmf_device.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "realtime/widgets/frm_view.h"
#include "shell/data_list.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "shell/widgets/view_window.h"
#include "support/keys.h"
#include "support/modal.h"
#include "support/day_window.h"
#include "support/test_env.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <cmath>

using namespace fm;

namespace {
// What wmf2svg makes of a metafile.
QByteArray ReadBack(const QString &wmf) {
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("wmf2svg"));
    if (tool.isEmpty()) return {};
    QProcess p;
    const QString svg = wmf + QStringLiteral(".svg");
    p.start(tool, {QStringLiteral("-o"), svg, wmf});
    if (!p.waitForFinished(30000) || p.exitCode() != 0) return {};
    return test::ReadBytes(svg);
}

int Count(const QByteArray &text, const char *what) {
    return int(text.count(QByteArray(what)));
}

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

class StatsChartTest : public QObject {
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
        main_ = test::StartOnDayLog(dir_.path(), &pty_, {1200, 860});
        QVERIFY(main_);
        main_->show();
        main_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(main_));  // focus events need an active window
        QMdiSubWindow *w = ViewDataSource(true);
        QVERIFY(w);
        view_ = qobject_cast<frmSource *>(w->widget())->txtSource;
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

    void metafileReadsBackAsDrawn() {
        WmfDevice dev(200, 100);
        QPainter p(&dev);
        p.setPen(QPen(Qt::red, 2));
        p.drawLine(10, 10, 190, 90);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 0, 255));
        p.drawRect(20, 50, 40, 30);
        p.setPen(Qt::black);
        p.setFont(QFont(QStringLiteral("DejaVu Sans"), 12));
        p.drawText(QPointF(80, 40), QString::fromUtf8("Campo µT"));
        p.translate(15, 90);
        p.rotate(-90);
        p.drawText(QPointF(0, 0), QStringLiteral("Up"));
        p.end();
        const QByteArray bytes = dev.Bytes();
        // The placeable header: key, bounds, units per inch, and the checksum of its ten words.
        QCOMPARE(bytes.left(4), QByteArray("\xD7\xCD\xC6\x9A", 4));
        auto word = [&](int i) { return uint16_t(uchar(bytes[2 * i]) | uchar(bytes[2 * i + 1]) << 8); };
        QCOMPARE(int(word(5)) * 100, int(word(6)) * 200);  // the shape of the frame
        uint16_t sum = 0;
        for (int i = 0; i < 10; ++i) sum ^= word(i);
        QCOMPARE(word(10), sum);
        QCOMPARE(int(bytes.size()) - 22, 2 * int(word(14) | word(15) << 16));  // size in words

        const QString file = dir_.filePath(QStringLiteral("shapes.wmf"));
        QVERIFY(dev.Save(file));
        const QByteArray svg = ReadBack(file);
        QVERIFY2(!svg.isEmpty(), "wmf2svg could not read the metafile");
        QVERIFY(svg.contains("stroke:red"));
        QVERIFY(svg.contains("fill:blue; stroke:none"));
        QVERIFY(svg.contains(">Campo \xB5T</text>"));                          // Windows-1252 text as written
        QVERIFY(svg.contains("matrix(0.000000 -1.000000 1.000000 0.000000"));  // the upright text
        QVERIFY(svg.indexOf("Campo") < svg.indexOf(">Up<"));                   // records in painting order
    }

    void statisticsWindow() {
        main_->tbrToolbar_ButtonClick(14);
        frmGraphSt *st = test::Shown<frmGraphSt>(main_);
        QVERIFY(st);
        QVERIFY(Shared().GraphStOpen);
        ChartControl *c = st->teeStatistics;
        // The first limits are the measurement's own, and 11 classes.
        QCOMPARE(st->txtMinValue->text(),
                 FormatNumber(Data().DataMin, u"0.##").replace(QLatin1Char(','), QLatin1Char('.')));
        QCOMPARE(st->cboNumClassi->currentText(), QStringLiteral(" 11"));
        QCOMPARE(c->Count(0), 11);
        double total = 0;
        for (int i = 1; i <= Statistics().StatClasses; ++i) total += Statistics().StatPercent[size_t(i)];
        QVERIFY(std::abs(total - 100) < 0.01);
        test::Snapshot(st, QStringLiteral("stats_chart"));

        // The key filter (all its editing keys are in the settings test): "1,5" reads 1.5, a
        // letter never shows, Delete passes; leaving the box brings it within 0 to 50.
        st->txtMinValue->setFocus();
        st->txtMinValue->clear();
        QTest::keyClicks(st->txtMinValue, QStringLiteral("1,5x"));
        QCOMPARE(st->txtMinValue->text(), QStringLiteral("1.5"));
        QTest::keyClick(st->txtMinValue, Qt::Key_Home);
        test::PressDelete(st->txtMinValue);
        QCOMPARE(st->txtMinValue->text(), QStringLiteral(".5"));
        st->txtMinValue->setText(QStringLiteral("1.5"));
        st->txtMaxValue->setFocus();
        st->txtMaxValue->clear();
        QTest::keyClicks(st->txtMaxValue, QStringLiteral("60"));
        st->txtMinValue->setFocus();
        QCOMPARE(st->txtMaxValue->text(), QStringLiteral("50"));
        st->updMin[0]->click();
        QCOMPARE(st->txtMinValue->text(), QStringLiteral("3"));

        // Equal limits: the message, and the bars stay as they were.
        st->txtMinValue->setText(QStringLiteral("50"));
        QString said;
        test::WhenModal([&](QWidget *w) {
            said = qobject_cast<frmMessageBox *>(w)->lblMessage->text();
            w->close();
        });
        st->btnRefresh->click();
        QCOMPARE(said, ResString(30));
        QCOMPARE(c->Count(0), 11);

        // Five classes from 0: four ranges and the "over" class.
        st->txtMinValue->setText(QStringLiteral("0"));
        st->txtMaxValue->setText(QStringLiteral("0.6"));
        st->cboNumClassi->setCurrentIndex(2);
        st->btnRefresh->click();
        QCOMPARE(c->Count(0), 5);
        QVERIFY(Statistics().StatLabel[5].startsWith(QLatin1Char('>')));

        // The image through the save dialog: the filter in force decides the format.
        QString title;
        CommonDialog::SetResponder([&](const CommonDialog &d, bool) {
            title = d.DialogTitle;
            return CommonDialog::Answer{dir_.filePath(QStringLiteral("bars.png")), 2};
        });
        st->SaveImage();
        CommonDialog::SetResponder(nullptr);
        QCOMPARE(title, ResString(3036));
        const QByteArray svg = ReadBack(dir_.filePath(QStringLiteral("bars.png.wmf")));
        QVERIFY2(!svg.isEmpty(), "the metafile of the bars did not read back");
        QVERIFY(svg.contains(ResString(3037).toLatin1()));
        QCOMPARE(Count(svg, "fill:red;"), 5);  // the bars, in the bar colour of the options
        main_->mdiArea->closeAllSubWindows();
        QTRY_VERIFY(!Shared().GraphStOpen);
    }

    // The first limits are the float extremes as their own digits: 0.165 rounds to
    // 0.16 as the data list rounds it, 3.46 shows no digits of its widening.
    void limitsReadAsTheExtremes() {
        const float min = Data().DataMin, max = Data().DataMax;
        Data().DataMin = 0.165f;
        Data().DataMax = 3.46f;
        main_->tbrToolbar_ButtonClick(14);
        frmGraphSt *st = test::Shown<frmGraphSt>(main_);
        QVERIFY(st);
        QCOMPARE(st->txtMinValue->text(), QStringLiteral("0.16"));
        QCOMPARE(st->txtMaxValue->text(), QStringLiteral("3.46"));
        main_->mdiArea->closeAllSubWindows();
        QTRY_VERIFY(!Shared().GraphStOpen);
        Data().DataMin = min;
        Data().DataMax = max;
    }

    void timeChartImages() {
        main_->tbrToolbar_ButtonClick(13);
        frmGraphTe *te = main_->findChild<frmGraphTe *>();
        QVERIFY(te);
        const QString jpg = dir_.filePath(QStringLiteral("chart.jpg"));
        CommonDialog::SetResponder([&](const CommonDialog &, bool) { return CommonDialog::Answer{jpg, 1}; });
        te->SaveImage();
        CommonDialog::SetResponder(nullptr);
        QCOMPARE(QImage(jpg).size(), QSize(800, 600));

        const QString wmf = dir_.filePath(QStringLiteral("chart.wmf"));
        QVERIFY(ExportChartImage(te->teeEvolution, wmf));
        const QByteArray svg = ReadBack(wmf);
        QVERIFY2(!svg.isEmpty(), "the metafile of the time chart did not read back");
        QVERIFY(svg.contains(ResString(3034).toLatin1()));
        // Four traces and the threshold: long polylines in the trace colours, and a dashed line.
        const QRegularExpression trace(QStringLiteral("<polyline points=\"([^\"]*)\""));
        int longLines = 0;
        for (auto it = trace.globalMatch(QString::fromLatin1(svg)); it.hasNext();)
            if (it.next().captured(1).count(QLatin1Char(',')) > 50) ++longLines;
        QCOMPARE(longLines, 4);
        QVERIFY(QString::fromLatin1(svg).contains(
            QRegularExpression(QStringLiteral("stroke-dasharray:[0-9.]+ [0-9.]+; stroke:(?!silver)"))));
        // The dates under the axis, date above time.
        QVERIFY(svg.contains(GeneralDate(Data().DataStart).section(QLatin1Char(' '), 0, 0).toLatin1()));
        main_->mdiArea->closeAllSubWindows();
    }

    void panelsFitInBothLanguages() {
        main_->resize(1280, 800);
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
        w->close();
    }
};

QTEST_MAIN(StatsChartTest)
#include "stats_chart_test.moc"
