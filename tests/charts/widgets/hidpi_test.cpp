// At a pixel ratio of 2: pictures drawn with twice the pixels, chart images at the size
// asked for all the same.
#include "charts/widgets/chart_control.h"
#include "core/widgets/icons.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

namespace {
// The pixels where two pictures of one size differ in coverage by more than half.
int Differing(const QImage &a, const QImage &b) {
    int n = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) n += qAbs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y))) > 128;
    return n;
}
}  // namespace

class HiDpiTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QCOMPARE(qApp->devicePixelRatio(), 2.0); }

    void picturesHaveTwiceThePixels() {
        const QPixmap message = MessageImage(1, 32);
        QCOMPARE(message.size(), QSize(64, 64));
        QCOMPARE(message.deviceIndependentSize(), QSizeF(32, 32));
        QCOMPARE(StatusImage(3).size(), QSize(32, 32));
        // The whole picture on its twice-as-large canvas, not a corner of it enlarged.
        QSvgRenderer svg(QStringLiteral(":/icons/status/3.svg"));
        QImage plain(64, 64, QImage::Format_ARGB32);
        plain.fill(Qt::transparent);
        QPainter p(&plain);
        svg.render(&p);
        p.end();
        const QImage got = StatusImage(3, 32).toImage();
        QCOMPARE(got.size(), plain.size());
        QVERIFY2(Differing(plain, got) < 64 * 64 / 50, qPrintable(QString::number(Differing(plain, got))));
        // Icons are drawn from the SVG at the size and ratio asked, not scaled up.
        const QPixmap tool = ToolbarImage(2).pixmap(QSize(18, 18), 2.0);
        QCOMPARE(tool.size(), QSize(36, 36));
        const QPixmap closeIcon = MessageIcon(0).pixmap(QSize(18, 18), 2.0);
        QCOMPARE(closeIcon.size(), QSize(36, 36));
    }

    void chartImageKeepsItsPixelSize() {
        QTemporaryDir dir;
        ChartControl chart;
        chart.resize(400, 300);
        chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&chart));
        const QString png = dir.filePath(QStringLiteral("chart.png")),
                      jpg = dir.filePath(QStringLiteral("chart.jpg"));
        QVERIFY(chart.Export(png, 800, 600));
        QVERIFY(chart.ExportJpeg(jpg, 800, 600, 90));
        QCOMPARE(QImage(png).size(), QSize(800, 600));
        QCOMPARE(QImage(jpg).size(), QSize(800, 600));
    }
};

int main(int argc, char **argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    HiDpiTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "hidpi_test.moc"
