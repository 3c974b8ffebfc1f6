// The upload's wait window against the simulator at the line's own rate: while the reply
// comes in the window is on the screen with its text and the share received so far, no
// timer runs, and the upload brings the same samples as ever. And the menu entry of the
// Surveyor import against its simulator: the views open on the new, unsaved data set.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "analysis/warnings.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_message_box.h"
#include "shell/widgets/frm_wait.h"
#include "shell/widgets/main_entry.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QAction>
#include <QToolBar>

using namespace fm;

namespace {
// Pixels clearly darker than the window's face: the strokes of painted text.
int DarkPixels(const QImage &image, const QRect &area) {
    int dark = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (image.valid(x, y) && qGray(image.pixel(x, y)) < 110) ++dark;
    return dark;
}

struct Seen {
    int received = 0, total = 0;
    bool visible = false;
    int textInk = 0, shareInk = 0;
    QString share;
    int ticks = 0;
};
} // namespace

class WaitWindowTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

private slots:
    void uploadPaintsTheShareReceived() {
        SetWritableDir(dir_.path());
        const QString dump = dir_.filePath(QStringLiteral("samples.txt"));
        // 4096 bytes at 1920 bytes a second: two seconds of reply.
        test::Simulator sim(dir_.path(), {"--memory", "4096", "--dump-samples", dump});
        QVERIFY(!sim.device.isEmpty());
        QVERIFY(StartUp(0, {}));  // "Com 1" is the link beside the options
        frmMain *m = MainForm();
        QVERIFY(m);
        m->resize(1000, 700);

        int ticks = 0;  // a timer of the application's own kind, which must not run
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
        ticker.start(5);

        std::vector<Seen> seen;
        connect(m, &frmMain::WaitPainted, this, [&](int received, int total) {
            frmWait *w = m->findChild<frmWait *>();
            QVERIFY(w);
            Seen s;
            s.received = received;
            s.total = total;
            s.visible = w->isVisible();
            // What reached the screen, not what the widget would paint if asked.
            const QImage shot = w->screen()->grabWindow(w->winId()).toImage();
            s.textInk = DarkPixels(shot, w->lblProgress->geometry());
            s.shareInk = w->lblShare->isVisible() ? DarkPixels(shot, w->lblShare->geometry()) : 0;
            s.share = w->lblShare->isVisible() ? w->lblShare->text() : QString();
            s.ticks = ticks;
            if (seen.size() == 8) shot.save(qEnvironmentVariable("FLUXMERE_TEST_OUT", QStringLiteral(".")) +
                                            QStringLiteral("/wait_window.png"));
            seen.push_back(s);
        });

        // "Connect the logger, then OK", and the upload from its toolbar button.
        test::WhenModal([](QWidget *w) { qobject_cast<frmMessageBox *>(w)->btnOK->click(); });
        QTest::mouseClick(m->tbrToolbar->widgetForAction(m->Buttons[7]), Qt::LeftButton);

        QVERIFY2(seen.size() >= 10, qPrintable(QString::number(seen.size())));
        QCOMPARE(seen.back().received, seen.back().total);
        QVERIFY(seen.back().total > 4096);
        QCOMPARE(seen.back().share, ResString(3052) + QStringLiteral("100 %"));
        QStringList shares;
        for (size_t i = 0; i < seen.size(); ++i) {
            const Seen &s = seen[i];
            QVERIFY(s.visible);
            QVERIFY2(s.textInk > 20, qPrintable(QStringLiteral("blank text at %1").arg(i)));
            QCOMPARE(s.ticks, seen.front().ticks);
            if (i > 0) QVERIFY(s.received >= seen[i - 1].received);
            if (s.total == 0) continue;
            QVERIFY2(s.shareInk > 20, qPrintable(QStringLiteral("blank share at %1").arg(i)));
            if (shares.isEmpty() || shares.last() != s.share) shares << s.share;
        }
        QVERIFY2(shares.size() >= 5, qPrintable(shares.join(QLatin1Char(','))));

        // The wait is over, the window gone and the data the logger's.
        QVERIFY(!m->findChild<frmWait *>() || !m->findChild<frmWait *>()->isVisible());
        QVERIFY(ticks > seen.back().ticks);
        const QStringList expected =
            QString::fromLatin1(test::ReadBytes(dump)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        const MeasurementData &d = Data();
        QCOMPARE(d.DataCount, 571);  // (4096 - 96) / 7
        QCOMPARE(int(expected.size()), d.DataCount);
        for (int i = 1; i <= d.DataCount; ++i) QCOMPARE(test::SampleText(d, i), expected[i - 1]);

        test::CloseMain(m);
    }

    void importOpensTheViewsOnUnsavedData() {
        const QString f = ShortDateFormat();
        QStringList args{"--fast", "--blocks", "3", "--records", "120", "--gap", "6"};
        if (f.indexOf(QLatin1Char('M')) < f.indexOf(QLatin1Char('d')))
            args << QStringLiteral("--month-first");
        test::Simulator sim(dir_.path(), args, QStringLiteral(FLUXMERE_SURVEYOR_SIM));
        QVERIFY(!sim.device.isEmpty());
        Data() = MeasurementData{};
        Warnings().clear();
        QVERIFY(StartUp(0, {}));
        frmMain *m = MainForm();
        QVERIFY(m);
        m->mnuSubFile[4]->trigger();
        QCOMPARE(Data().DataSource, QStringLiteral("Surveyor"));
        QCOMPARE(Data().DataCount, 120 + 6 + 120);
        QVERIFY(!Data().DataSaved);
        for (int b : {3, 4, 13, 14, 15}) QVERIFY(m->ButtonEnabled(b));
        // The data list and the time chart open on it without a fault.
        m->tbrToolbar_ButtonClick(15);
        m->tbrToolbar_ButtonClick(13);
        QVERIFY(Shared().SourceOpen);
        QVERIFY(Shared().GraphTeOpen);
        QCOMPARE(Data().DataDate(121), GeneralDate(DateAdd(QStringLiteral("n"), 120, Data().DataStart)));
        m->resize(1100, 700);
        test::Snapshot(m, QStringLiteral("main_surveyor"));
        test::CloseMain(m);
    }
};

QTEST_MAIN(WaitWindowTest)
#include "wait_window_test.moc"
