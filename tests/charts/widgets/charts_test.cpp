// The main window on a day's log. The data list as text a user can take away: lines
// selected with the mouse and the keys, copied as the saved list writes them; the editing
// keys of the box with the focus before the menus' shortcuts; the date column in line
// whatever the hour. The statistics chart as a user meets it, and the chart images: JPEG
// and the metafile, which an independent reader (libwmf's wmf2svg) must show as drawn.
// The chart windows' side panels and the live window in both languages: every control
// has the room its text needs and none lies over another.
// Then, in a folder of its own, the time chart and the data list pointing at each other's
// samples: gaps and the logarithmic scale, a click on a chart point at its pixel, a click
// on a row, the order by value, a hidden resultant, the image saved while the cross is up;
// a "File Centralina" file's RF chart joining them, its images, and its closing by the
// next load.
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
#include "core/options.h"
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
#include "support/day_window.h"
#include "support/keys.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <cmath>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
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
#include <QToolBar>
#include <QToolButton>

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

// Red, or the half-tone of a red line drawn between two pixel rows.
bool Reddish(QRgb c) {
    return qRed(c) > 200 && qGreen(c) < 170 && qBlue(c) < 170;
}

int RedPixels(const QImage &image) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) n += Reddish(image.pixel(x, y));
    return n;
}

// The plot as it stands on screen.
QImage OnScreen(ChartControl *c) {
    c->Plot()->replot();
    return c->Plot()->grab().toImage();
}

// Red pixels down the column of point i of the resultant and across its row: the cross
// lines, when they stand on that point, run through most of the plot. (On the first and
// the last point the frame covers the vertical line.)
bool CrossOn(ChartControl *c, int i) {
    const QImage shot = OnScreen(c);
    const QPoint at = c->PointPosition(3, i).toPoint();
    const QRect plot = c->Plot()->axisRect()->rect();
    const auto redNear = [&](int x, int y, bool across) {
        for (int d = -1; d <= 1; ++d)
            if (Reddish(shot.pixel(across ? x : x + d, across ? y + d : y))) return true;
        return false;
    };
    int down = 0, across = 0;
    for (int y = plot.top(); y <= plot.bottom(); ++y) down += redNear(at.x(), y, false);
    for (int x = plot.left(); x <= plot.right(); ++x) across += redNear(x, at.y(), true);
    const bool atEdge = at.x() <= plot.left() + 1 || at.x() >= plot.right() - 1;
    return (atEdge || down > plot.height() * 8 / 10) && across > plot.width() * 8 / 10;
}

constexpr int kRecords = 240;

// Twenty minutes of a unit near a transmitter: the RF field swells and falls, and
// drops to 0 for a while.
QByteArray UnitFile() {
    QByteArray text;
    for (int i = 0; i < kRecords; ++i) {
        const double rf = i >= 150 && i < 160 ? 0 : 1.5 + std::sin(i / 20.0) + i / 100.0;
        text += "14/10/2026 08:00:00,0.30,0.40,0.10," + QByteArray(i % 3 ? "-100" : "21.5") + ',' +
                QByteArray::number(rf, 'f', 3) + ",0.51\n";
    }
    return text;
}
}  // namespace

class ChartsTest : public QObject {
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

    // The second part's own folder, "com1", logs and window.
    QTemporaryDir link_;
    int linkPty_ = -1;
    QString day_, other_, unit_;
    frmMain *m_ = nullptr;

    // The view on screen: a window closed by a load may wait a moment to be deleted.
    template <class Form>
    Form *Shown() { return test::Shown<Form>(m_); }
    frmGraphTe *Chart() { return Shown<frmGraphTe>(); }
    frmSource *List() { return Shown<frmSource>(); }
    ChartControl *Plot() { return Chart()->teeEvolution; }
    ChartControl *Rf() { return Shown<frmGraphRf>()->teeEvolution; }
    // The chart and the list tiled one above the other, the findings out of the way.
    void Lay() {
        if (m_->ButtonValue(19)) m_->tbrToolbar_ButtonClick(19);
        m_->tbrToolbar_ButtonClick(21);
        QTest::qWait(20);
        Plot()->Plot()->replot();
    }
    void ClickPoint(int series, int i) {
        Plot()->Plot()->replot();
        QTest::mouseClick(Plot()->Plot(), Qt::LeftButton, {}, Plot()->PointPosition(series, i).toPoint());
    }
    // A click on the line of the list as it stands on screen.
    void ClickLine(int64_t line) {
        SourceView *v = List()->txtSource;
        const int h = v->fontMetrics().lineSpacing();
        const int64_t row = line - v->verticalScrollBar()->value();
        QVERIFY(row >= 0 && (row + 1) * h <= v->viewport()->height());
        QTest::mouseClick(v->viewport(), Qt::LeftButton, {}, QPoint(40, int(row) * h + h / 2));
    }
    int64_t LineOf(int sample) { return List()->txtSource->List()->LineOfSample(sample); }
    int64_t Selected() { return List()->txtSource->CurrentLine(); }

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

    // The window of the first part goes; the second starts on its own logs, Y in green so
    // that the cross is the only red on the chart.
    void linkedViewsStartOnADayWithAGap() {
        test::CloseMain(main_);
        main_ = nullptr;
        SetWritableDir(link_.path());
        linkPty_ = test::LinkPtyAsCom1(link_.path());
        QVERIFY(linkPty_ >= 0);
        OptionsRecord o = OptionsRecord::Defaults();
        o.ColorTrace2 = 0x008000;
        o.FirstRun = false;
        test::WriteBytes(OptionsPath(), o.ToBytes());
        day_ = link_.filePath(QStringLiteral("day.log"));
        other_ = link_.filePath(QStringLiteral("other.log"));
        unit_ = link_.filePath(QStringLiteral("unit.csv"));
        test::WriteBytes(unit_, UnitFile());
        test::WriteDayLog(day_, 144, 50);
        test::WriteDayLog(other_, 90, 30);
        Data() = MeasurementData{};
        QVERIFY(StartUp(0, {QStringLiteral("-L"), day_}));
        m_ = MainForm();
        m_->resize(1200, 900);
        QVERIFY(Chart() && List());
        Lay();
    }
    void cleanupTestCase() {
        CommonDialog::SetResponder(nullptr);
        test::CloseMain(MainForm());
        ::close(pty_);
        ::close(linkPty_);
    }

    // After File > Open the new chart and the new list answer each other, not the ones
    // the load closed.
    // A sample without data breaks the lines; the logarithmic scale keeps every point.
    void gapsAndTheLogarithmicScale() {
        QCOMPARE(Plot()->SeriesCount(), 4);
        QCOMPARE(Plot()->Count(3), 144);
        QVERIFY(std::isnan(Plot()->PointPosition(3, 50).y()));
        Chart()->chkLogaritmic->setChecked(true);
        QVERIFY(Plot()->Logarithmic());
        QCOMPARE(Plot()->Count(0), 144);
        Chart()->chkLogaritmic->setChecked(false);
    }

    void aClickOnAPointSelectsItsRowWithoutRestyling() {
        test::OpenFromMenu(m_, other_);
        QCOMPARE(m_->findChildren<frmGraphTe *>().size(), 1);
        QCOMPARE(Plot()->Count(3), 90);
        Lay();
        QCPGraph *resultant = Plot()->Plot()->graph(3);
        const QPen pen = resultant->pen();
        ClickPoint(3, 20);
        QCOMPARE(Selected(), LineOf(21));
        QVERIFY(CrossOn(Plot(), 20));
        QCOMPARE(resultant->pen(), pen);
        QVERIFY(!resultant->selected());
        QVERIFY(Plot()->Plot()->selectedPlottables().isEmpty());
        test::Snapshot(m_, QStringLiteral("link_point_clicked"));
        // A point of the X trace stands for the same sample; the cross goes on the resultant.
        ClickPoint(0, 40);
        QCOMPARE(Selected(), LineOf(41));
        QVERIFY(CrossOn(Plot(), 40));
        // Beside every trace a click is the zoom's, and nothing moves.
        QTest::mouseClick(
            Plot()->Plot(), Qt::LeftButton, {},
            QPoint(int(Plot()->PointPosition(3, 60).x()), Plot()->Plot()->axisRect()->top() + 3));
        QCOMPARE(Selected(), LineOf(41));
    }

    void aHiddenResultantTakesNoCrossAndSelectsNoRow() {
        ClickPoint(3, 10);
        QCOMPARE(Selected(), LineOf(11));
        QCheckBox *hide = Chart()->chkHidePlot[3];
        QTest::mouseClick(hide, Qt::LeftButton, {}, QPoint(8, hide->height() / 2));
        QVERIFY(hide->isChecked());
        QVERIFY(!Plot()->CrossVisible());
        ClickPoint(0, 30);
        QCOMPARE(Selected(), LineOf(11));
        QVERIFY(!Plot()->CrossVisible());
        ClickLine(LineOf(12));  // a row moves no cross onto a hidden trace
        QVERIFY(!Plot()->CrossVisible());
        QTest::mouseClick(hide, Qt::LeftButton, {}, QPoint(8, hide->height() / 2));
        QVERIFY(!hide->isChecked());
    }

    void rowsOfTheListMoveTheCross() {
        List()->txtSource->verticalScrollBar()->setValue(0);
        ClickLine(LineOf(5));
        QVERIFY(CrossOn(Plot(), 4));
        ClickLine(2);  // a heading line
        QVERIFY(!Plot()->CrossVisible());
        ClickLine(LineOf(5));
        QVERIFY(CrossOn(Plot(), 4));
        ClickLine(LineOf(1) - 1);  // the blank line above the first row
        QVERIFY(!Plot()->CrossVisible());
        // The row of a sample without data: sample 31 of this file.
        ClickLine(LineOf(1));
        QVERIFY(CrossOn(Plot(), 0));
        List()->txtSource->verticalScrollBar()->setValue(int(LineOf(25)));
        ClickLine(LineOf(32));
        QVERIFY(CrossOn(Plot(), 31));
        QVERIFY(List()
                    ->txtSource->List()
                    ->Line(LineOf(31))
                    .endsWith(QStringLiteral("NOT AVAILABLE - OPERATING GSM")));
        ClickLine(LineOf(31));
        QCOMPARE(Selected(), LineOf(31));
        QVERIFY(!Plot()->CrossVisible());
        // The keyboard moves on to the next row, and the cross with it.
        QTest::keyClick(List()->txtSource, Qt::Key_Down);
        QVERIFY(CrossOn(Plot(), 31));
        // The row of the last sample puts the cross on the last point.
        QTest::keyClick(List()->txtSource, Qt::Key_End);
        QVERIFY(CrossOn(Plot(), 89));
    }

    void inValueOrderNothingMoves() {
        ClickPoint(3, 50);
        QVERIFY(CrossOn(Plot(), 50));
        QToolBar *bar = List()->tbrGraphSrc;
        QTest::mouseClick(bar->widgetForAction(List()->btnOrder), Qt::LeftButton);
        QVERIFY(!List()->IsChronological());
        List()->txtSource->verticalScrollBar()->setValue(0);
        ClickLine(LineOf(3));
        QCOMPARE(Selected(), LineOf(3));
        QVERIFY(CrossOn(Plot(), 50));
        ClickLine(2);
        QVERIFY(CrossOn(Plot(), 50));
        ClickPoint(3, 70);
        QCOMPARE(Selected(), qint64(2));
        QVERIFY(CrossOn(Plot(), 50));
        QTest::mouseClick(bar->widgetForAction(List()->btnOrder), Qt::LeftButton);
        QVERIFY(List()->IsChronological());
    }

    // The cross is for the screen: the saved picture shows the chart alone.
    void anImageLeavesTheCrossOut() {
        ClickPoint(3, 60);
        QVERIFY(RedPixels(OnScreen(Plot())) > 100);
        const QString png = link_.filePath(QStringLiteral("with_cross.png"));
        CommonDialog::SetResponder(
            [&](const CommonDialog &, bool save) -> std::optional<CommonDialog::Answer> {
                if (!save) return std::nullopt;
                return CommonDialog::Answer{png, 3};
            });
        QTest::mouseClick(Chart()->tbrGraphTe->widgetForAction(Chart()->tbrGraphTe->actions().at(0)),
                          Qt::LeftButton);
        CommonDialog::SetResponder(nullptr);
        const QImage saved(png);
        QCOMPARE(saved.size(), QSize(800, 600));
        QCOMPARE(RedPixels(saved), 0);
        QVERIFY(CrossOn(Plot(), 60));  // still up on screen
        // JPEG at quality 100: all quantisation steps 1.
        const QString jpg = link_.filePath(QStringLiteral("with_cross.jpg"));
        QVERIFY(Plot()->ExportJpeg(jpg, 800, 600, 100));
        QCOMPARE(RedPixels(QImage(jpg)), 0);
        const QByteArray bytes = test::ReadBytes(jpg);
        const int dqt = int(bytes.indexOf(QByteArray("\xFF\xDB", 2)));
        QVERIFY(dqt > 0);
        for (int i = 0; i < 64; ++i) QCOMPARE(int(uchar(bytes[dqt + 5 + i])), 1);
    }

    void theTimeChartOffersTheRfChart() {
        test::OpenFromMenu(m_, unit_, 2);
        QVERIFY(Data().DataIsCsv);
        QCOMPARE(Data().DataCount, kRecords);
        frmGraphTe *te = Shown<frmGraphTe>();
        QVERIFY(te && List());
        QVERIFY(te->btnShowRf->isVisible());
        // The list's heading has the auxiliary channel's line: sample 1 is on line 8.
        QCOMPARE(List()->txtSource->List()->HeadingLines(), 8);
        QVERIFY(List()->txtSource->List()->Line(5).startsWith(ResString(45)));
        QTest::mouseClick(te->btnShowRf, Qt::LeftButton);
        QTest::qWait(20);
        QVERIFY(Shared().GraphRfOpen);
        frmGraphRf *rf = Shown<frmGraphRf>();
        QVERIFY(rf);
        QCOMPARE(rf->windowTitle(), ResString(4205) + QStringLiteral(" [") + unit_ + QLatin1Char(']'));
        // A second click brings the same window forward.
        QTest::mouseClick(te->btnShowRf, Qt::LeftButton);
        QCOMPARE(m_->findChildren<frmGraphRf *>().size(), 1);
    }

    void theRfFieldIsOneTraceWithoutGaps() {
        ChartControl *c = Rf();
        QCOMPARE(c->SeriesCount(), 1);
        QCOMPARE(c->Count(0), kRecords);
        QVERIFY(!std::isnan(c->PointPosition(0, 155).y()));  // 0 V/m is drawn, not a gap
        const QCPRange y = c->Plot()->yAxis->range();
        const double range = double(Data().RfMax) - double(Data().RfMin);
        QCOMPARE(y.lower, 0.0);
        QVERIFY(std::abs(y.upper - (Data().RfMax + range / 10)) < 1e-6);
    }

    void aClickOnAnRfPointSelectsItsRow() {
        Lay();
        ChartControl *c = Rf();
        for (int i : {0, 37, 200}) {
            c->Plot()->replot();
            QTest::mouseClick(c->Plot(), Qt::LeftButton, {}, c->PointPosition(0, i).toPoint());
            QCOMPARE(Selected(), int64_t(i + 8));
            QVERIFY(c->CrossVisible());
        }
        // Hidden, the trace takes no cross and selects nothing.
        Shown<frmGraphRf>()->chkHidePlot->setChecked(true);
        QVERIFY(!c->CrossVisible());
        emit c->pointClicked(0, 50);
        QCOMPARE(Selected(), int64_t(200 + 8));
        Shown<frmGraphRf>()->chkHidePlot->setChecked(false);
    }

    void aRowOfTheListCrossesBothCharts() {
        List()->txtSource->SelectLine(8 + 99);
        QVERIFY(Rf()->CrossVisible());
        QVERIFY(Shown<frmGraphTe>()->teeEvolution->CrossVisible());
        List()->txtSource->SelectLine(7);  // the blank line above the first row
        QVERIFY(!Rf()->CrossVisible());
    }

    void theRfImageInEveryFormat() {
        const QString out = qEnvironmentVariable("FLUXMERE_TEST_OUT", link_.path());
        QDir().mkpath(out);
        for (const char *ext : {"jpg", "wmf", "png", "svg", "pdf"}) {
            const QString file = out + QStringLiteral("/rf_chart.") + QLatin1String(ext);
            QFile::remove(file);
            QVERIFY(ExportChartImage(Rf(), file));
            QVERIFY2(QFileInfo(file).size() > 1000, ext);
        }
        const QImage png(out + QStringLiteral("/rf_chart.png"));
        QCOMPARE(png.size(), QSize(800, 600));
        // The trace in ColorTrace1 (blue here) stands on the image.
        int traced = 0;
        for (int y = 0; y < png.height(); ++y)
            for (int x = 0; x < png.width(); ++x) {
                const QRgb p = png.pixel(x, y);
                traced += qBlue(p) > 180 && qRed(p) < 120 && qGreen(p) < 120;
            }
        QVERIFY(traced > 200);
    }

    void closingHandsTheClicksBackToTheTimeChart() {
        m_->mdiArea->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(Shown<frmGraphRf>()->parentWidget()));
        Shown<frmGraphRf>()->parentWidget()->close();
        QVERIFY(!Shared().GraphRfOpen);
        QTest::qWait(20);
        ChartControl *te = Shown<frmGraphTe>()->teeEvolution;
        emit te->pointClicked(3, 12);
        QCOMPARE(Selected(), int64_t(12 + 8));
        QVERIFY(te->CrossVisible());
    }

    void theNextLoadClosesTheRfChart() {
        QTest::mouseClick(Shown<frmGraphTe>()->btnShowRf, Qt::LeftButton);
        QVERIFY(Shared().GraphRfOpen);
        test::OpenFromMenu(m_, day_, 2);
        QVERIFY(!Data().DataIsCsv);
        QVERIFY(!Shared().GraphRfOpen);
        QVERIFY(!Shown<frmGraphRf>());
        QVERIFY(!Shown<frmGraphTe>()->btnShowRf->isVisible());
        QCOMPARE(List()->txtSource->List()->HeadingLines(), 7);
        // The recent files bring it back: the log is entry 1 now, the unit's file entry 2.
        m_->tbrToolbar_ButtonMenuClick(2);
        QTest::qWait(20);
        QVERIFY(Data().DataIsCsv);
        QVERIFY(Shown<frmGraphTe>()->btnShowRf->isVisible());
        QCOMPARE(List()->txtSource->List()->HeadingLines(), 8);
    }
};

QTEST_MAIN(ChartsTest)
#include "charts_test.moc"
