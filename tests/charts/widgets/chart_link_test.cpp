// The time chart and the data list point at each other's sample, as a person uses them:
// a click on a chart point at its pixel, a click on a row of the list, the order by value,
// a hidden resultant, and the image saved while the cross is up.
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/options.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/modal.h"
#include "support/day_window.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <unistd.h>
#include <QCheckBox>
#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace fm;

namespace {
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
}  // namespace

class ChartLinkTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    QString day_, other_;
    frmMain *m_ = nullptr;

    // The view on screen: a window closed by a load may wait a moment to be deleted.
    template <class Form>
    Form *Shown() { return test::Shown<Form>(m_); }
    frmGraphTe *Chart() { return Shown<frmGraphTe>(); }
    frmSource *List() { return Shown<frmSource>(); }
    ChartControl *Plot() { return Chart()->teeEvolution; }

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
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
        // Y in green: the cross is the only red on the chart.
        OptionsRecord o = OptionsRecord::Defaults();
        o.ColorTrace2 = 0x008000;
        o.FirstRun = false;
        test::WriteBytes(OptionsPath(), o.ToBytes());
        day_ = dir_.filePath(QStringLiteral("day.log"));
        other_ = dir_.filePath(QStringLiteral("other.log"));
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
        Data().DataSaved = true;
        ShutDown(m_);
        delete m_;
        ::close(pty_);
    }

    // After File > Open the new chart and the new list answer each other, not the ones
    // the load closed.
    void aClickOnAPointSelectsItsRowWithoutRestyling() {
        CommonDialog::SetResponder([this](const CommonDialog &, bool) -> std::optional<CommonDialog::Answer> {
            return CommonDialog::Answer{other_, 1};
        });
        m_->mnuSubFile[0]->trigger();
        CommonDialog::SetResponder(nullptr);
        QTest::qWait(20);
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
        test::Snapshot(m_, QStringLiteral("link_resultant_hidden"));
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
        test::Snapshot(m_, QStringLiteral("link_value_order"));
        QTest::mouseClick(bar->widgetForAction(List()->btnOrder), Qt::LeftButton);
        QVERIFY(List()->IsChronological());
    }

    // The cross is for the screen: the saved picture shows the chart alone.
    void anImageLeavesTheCrossOut() {
        ClickPoint(3, 60);
        QVERIFY(RedPixels(OnScreen(Plot())) > 100);
        const QString png = dir_.filePath(QStringLiteral("with_cross.png"));
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
        const QString jpg = dir_.filePath(QStringLiteral("with_cross.jpg"));
        QVERIFY(Plot()->ExportJpeg(jpg, 800, 600, 100));
        QCOMPARE(RedPixels(QImage(jpg)), 0);
    }
};

QTEST_MAIN(ChartLinkTest)
#include "chart_link_test.moc"
