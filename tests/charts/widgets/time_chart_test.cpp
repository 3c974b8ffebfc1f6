// The time evolution chart as a user meets it after a load: traces, gaps, threshold,
// logarithmic scale, hidden traces, the link with the data list, and its image.
#include "charts/widgets/chart_control.h"
#include "charts/widgets/frm_graph_te.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_source.h"
#include "shell/widgets/main_entry.h"
#include "shell/widgets/source_view.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <QCheckBox>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using namespace fm;

class TimeChartTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
    }
    void cleanupTestCase() { ::close(pty_); }

    void chartAfterALoad() {
        const QString log = dir_.filePath(QStringLiteral("day.log"));
        test::WriteDayLog(log, 144, 50);
        Data() = MeasurementData{};
        QVERIFY(StartUp(0, {QStringLiteral("-L"), log}));
        frmMain *m = MainForm();
        frmGraphTe *chart = m->findChild<frmGraphTe *>();
        frmSource *list = m->findChild<frmSource *>();
        QVERIFY(chart && list);
        QVERIFY(Shared().GraphTeOpen);
        ChartControl *c = chart->teeEvolution;
        QCOMPARE(c->SeriesCount(), 4);
        QCOMPARE(c->Count(3), 144);
        QVERIFY(std::isnan(c->PointPosition(3, 50).y()));  // the sample without data breaks the lines
        m->resize(1200, 760);
        m->tbrToolbar_ButtonClick(21);
        test::Snapshot(m, QStringLiteral("main_with_chart"));

        // A row of the list puts the cross on its point; a click on a point selects its row.
        list->txtSource->SelectLine(list->txtSource->List()->LineOfSample(10));
        QVERIFY(c->CrossVisible());
        chart->chkHidePlot[3]->setChecked(true);
        QVERIFY(!c->CrossVisible());
        QVERIFY(!c->Active(3));
        chart->chkHidePlot[3]->setChecked(false);
        emit c->pointClicked(3, 20);
        QCOMPARE(list->txtSource->CurrentLine(), list->txtSource->List()->LineOfSample(21));

        chart->chkLogaritmic->setChecked(true);
        QVERIFY(c->Logarithmic());
        QCOMPARE(c->Count(0), 144);
        test::Snapshot(chart, QStringLiteral("time_chart_log"));

        // The image: 800 by 600, JPEG at quality 100 (all quantisation steps 1).
        const QString jpg = dir_.filePath(QStringLiteral("chart.jpg"));
        QVERIFY(c->ExportJpeg(jpg, 800, 600, 100));
        QCOMPARE(QImage(jpg).size(), QSize(800, 600));
        const QByteArray bytes = test::ReadBytes(jpg);
        const int dqt = int(bytes.indexOf(QByteArray("\xFF\xDB", 2)));
        QVERIFY(dqt > 0);
        for (int i = 0; i < 64; ++i) QCOMPARE(int(uchar(bytes[dqt + 5 + i])), 1);
        const QString svg = dir_.filePath(QStringLiteral("chart.svg"));
        QVERIFY(c->Export(svg, 800, 600));
        QVERIFY(test::ReadBytes(svg).contains("<svg"));

        Data().DataSaved = true;
        ShutDown(m);
        delete m;
        QVERIFY(!Shared().GraphTeOpen);
    }
};

QTEST_MAIN(TimeChartTest)
#include "time_chart_test.moc"
