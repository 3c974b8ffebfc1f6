// A "File Centralina" file opened as a person does it: File > Open, the time chart's
// "Show RF data", the RF chart and the data list pointing at each other's sample, its
// images, and its closing by the next load.
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
#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using namespace fm;

namespace {
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

class RfChartTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;
    QString unit_, log_;
    frmMain *m_ = nullptr;

    template <class Form>
    Form *Shown() { return test::Shown<Form>(m_); }
    ChartControl *Rf() { return Shown<frmGraphRf>()->teeEvolution; }
    frmSource *List() { return Shown<frmSource>(); }
    int64_t Selected() { return List()->txtSource->CurrentLine(); }
    void Open(const QString &file) {
        CommonDialog::SetResponder(
            [file](const CommonDialog &dlg, bool) -> std::optional<CommonDialog::Answer> {
                if (!dlg.Filter.contains(QStringLiteral("(*.*)"))) return std::nullopt;
                return CommonDialog::Answer{file, 2};
            });
        m_->mnuSubFile[0]->trigger();
        CommonDialog::SetResponder(nullptr);
        QTest::qWait(20);
    }
    void Lay() {
        if (m_->ButtonValue(19)) m_->tbrToolbar_ButtonClick(19);
        m_->tbrToolbar_ButtonClick(21);
        QTest::qWait(20);
        Rf()->Plot()->replot();
    }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
        OptionsRecord o = OptionsRecord::Defaults();
        o.FirstRun = false;
        o.OpenGraphTe = o.OpenSource = true;
        o.Soglia = 2.0f;
        o.ColorTrace1 = 0xFF0000;  // blue, as 0x00BBGGRR
        test::WriteBytes(OptionsPath(), o.ToBytes());
        unit_ = dir_.filePath(QStringLiteral("unit.csv"));
        log_ = dir_.filePath(QStringLiteral("day.log"));
        test::WriteBytes(unit_, UnitFile());
        test::WriteDayLog(log_, 60);
        Data() = MeasurementData{};
        QVERIFY(StartUp(0, {}));
        m_ = MainForm();
        m_->resize(1200, 900);
    }
    void cleanupTestCase() {
        Data().DataSaved = true;
        ShutDown(m_);
        delete m_;
        ::close(pty_);
    }

    void theTimeChartOffersTheRfChart() {
        Open(unit_);
        QVERIFY(Data().DataIsCsv);
        QCOMPARE(Data().DataCount, kRecords);
        frmGraphTe *te = Shown<frmGraphTe>();
        QVERIFY(te && List());
        QVERIFY(te->btnShowRf->isVisible());
        QCOMPARE(te->btnShowRf->text(), ResString(4207));
        // The list's heading has the auxiliary channel's line: sample 1 is on line 8.
        QCOMPARE(List()->txtSource->List()->HeadingLines(), 8);
        QVERIFY(List()->txtSource->List()->Line(5).startsWith(ResString(45)));
        QTest::mouseClick(te->btnShowRf, Qt::LeftButton);
        QTest::qWait(20);
        QVERIFY(Shared().GraphRfOpen);
        frmGraphRf *rf = Shown<frmGraphRf>();
        QVERIFY(rf);
        QCOMPARE(rf->windowTitle(), ResString(4205) + QStringLiteral(" [") + unit_ + QLatin1Char(']'));
        QCOMPARE(rf->lblDescrizione->text(), ResString(4206));
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
        QTest::qWait(20);  // the cross is drawn at the next turn of the event loop
        test::Snapshot(m_, QStringLiteral("rf_point_clicked"));
        // Hidden, the trace takes no cross and selects nothing.
        rf()->chkHidePlot->setChecked(true);
        QVERIFY(!c->CrossVisible());
        emit c->pointClicked(0, 50);
        QCOMPARE(Selected(), int64_t(200 + 8));
        rf()->chkHidePlot->setChecked(false);
    }

    void aRowOfTheListCrossesBothCharts() {
        List()->txtSource->SelectLine(8 + 99);
        QVERIFY(Rf()->CrossVisible());
        QVERIFY(Shown<frmGraphTe>()->teeEvolution->CrossVisible());
        List()->txtSource->SelectLine(7);  // the blank line above the first row
        QVERIFY(!Rf()->CrossVisible());
    }

    void theImageInEveryFormatOfTheTimeChart() {
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
        Open(log_);
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

private:
    frmGraphRf *rf() { return Shown<frmGraphRf>(); }
};

QTEST_MAIN(RfChartTest)
#include "rf_chart_test.moc"
