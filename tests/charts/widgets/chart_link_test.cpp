// The time chart after a load, and the data list pointing at its samples as a person uses
// them: gaps and the logarithmic scale, a click on a chart point at its pixel, a click on a
// row of the list, the order by value, a hidden resultant, and the image saved while the
// cross is up. Then a "File Centralina" file opened with File > Open: the time chart's
// "Show RF data", the RF chart joining the list and the time chart, its images, and its
// closing by the next load.
#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_image.h"
#include "charts/widgets/frm_graph_rf.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
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
#include <QDir>
#include <QFileInfo>
#include <QPushButton>
#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <cmath>

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

class ChartLinkTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
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
        unit_ = dir_.filePath(QStringLiteral("unit.csv"));
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
        test::CloseMain(m_);
        ::close(pty_);
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
        // JPEG at quality 100: all quantisation steps 1.
        const QString jpg = dir_.filePath(QStringLiteral("with_cross.jpg"));
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
        const QString out = qEnvironmentVariable("FLUXMERE_TEST_OUT", dir_.path());
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

QTEST_MAIN(ChartLinkTest)
#include "chart_link_test.moc"
