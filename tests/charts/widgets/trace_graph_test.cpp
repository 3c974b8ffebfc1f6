// A long trace drawn from the chart's own values against the plot's own graph holding
// every point: the same pixels at every zoom, on a linear and a logarithmic scale, and the
// same point under a click.
#include "charts/widgets/trace_graph.h"

#include <QImage>
#include <QTest>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

using namespace fm;

namespace {
constexpr int kPoints = 300000;

std::shared_ptr<TraceValues> Values() {
    std::mt19937 rng(540);
    std::normal_distribution<double> noise(0, 0.05);
    std::vector<float> v(kPoints);
    for (int i = 0; i < kPoints; ++i) {
        v[size_t(i)] = float(1.2 + std::sin(i / 9000.0) + noise(rng) + (i % 70000 < 40 ? 4 : 0));
        // Gaps alone and in runs, some on what will be an interval's first point.
        if (i % 10007 == 0 || (i >= 150000 && i < 150300) || i % 33333 < 3)
            v[size_t(i)] = std::numeric_limits<float>::quiet_NaN();
    }
    auto values = std::make_shared<TraceValues>();
    values->Assign(std::move(v));
    return values;
}

int BluePixels(const QImage &image) {
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) n += image.pixel(x, y) == qRgb(0, 0, 255);
    return n;
}

struct Pair {
    QCustomPlot plain, own;
    QCPGraph *full;
    TraceGraph *trace;
    explicit Pair(const std::shared_ptr<TraceValues> &values) {
        full = plain.addGraph();
        trace = new TraceGraph(own.xAxis, own.yAxis);
        QVector<QCPGraphData> points(kPoints);
        for (int i = 0; i < kPoints; ++i) points[i] = QCPGraphData(i, (*values)[size_t(i)]);
        full->data()->set(points, true);
        trace->Attach(values);
        for (QCustomPlot *p : {&plain, &own}) {
            p->resize(900, 500);
            p->graph(0)->setAdaptiveSampling(true);
            p->graph(0)->setAntialiased(false);
            p->graph(0)->setPen(QPen(Qt::blue, 1));
        }
    }
    void Range(double lower, double upper, double bottom, double top, bool log = false) {
        for (QCustomPlot *p : {&plain, &own}) {
            p->xAxis->setRange(lower, upper);
            p->yAxis->setRange(bottom, top);
            p->yAxis->setScaleType(log ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
            p->replot();
        }
    }
};
}  // namespace

class TraceGraphTest : public QObject {
    Q_OBJECT

private slots:
    void drawsThePixelsOfTheWholeTrace() {
        Pair pair(Values());
        struct View {
            double lower, upper, bottom, top;
            bool log;
        };
        const View views[] = {{0, kPoints - 1, 0, 6, false},  {-5000, kPoints + 9000, -1, 7, false},
                              {149000, 151500, 0, 6, false},  {1234.5, 1700.25, 0.5, 3, false},
                              {100, 2100, 0, 6, false},       {299990, 310000, 0, 6, false},
                              {-100, -10, 0, 6, false},       {0, kPoints - 1, 0.01, 10, true},
                              {69900, 70100, 0.01, 10, true}, {12345.6, 12346.2, 0, 6, false}};
        for (const View &v : views) {
            pair.Range(v.lower, v.upper, v.bottom, v.top, v.log);
            const QImage a = pair.plain.toPixmap(900, 500).toImage();
            const QImage b = pair.own.toPixmap(900, 500).toImage();
            QVERIFY2(a == b, qPrintable(QStringLiteral("view %1 to %2").arg(v.lower).arg(v.upper)));
            if (&v == &views[0]) QVERIFY(BluePixels(a) > 2000);  // a trace is on show at all
        }
    }

    void aClickFindsTheSamePoint() {
        Pair pair(Values());
        for (const auto &[lower, upper] :
             {std::pair{0.0, double(kPoints - 1)}, {149500.0, 150600.0}, {500.0, 900.0}}) {
            pair.Range(lower, upper, 0, 6);
            const QRect rect = pair.plain.axisRect()->rect();
            for (int x = rect.left() - 3; x <= rect.right() + 3; x += 7) {
                for (int y = rect.top(); y <= rect.bottom(); y += 11) {
                    QVariant da, db;
                    const double a = pair.full->selectTest(QPointF(x, y), false, &da);
                    const double b = pair.trace->selectTest(QPointF(x, y), false, &db);
                    QCOMPARE(b, a);
                    if (a >= 0)
                        QCOMPARE(db.value<QCPDataSelection>().dataRange().begin(),
                                 da.value<QCPDataSelection>().dataRange().begin());
                }
            }
        }
    }
};

QTEST_MAIN(TraceGraphTest)
#include "trace_graph_test.moc"
