// The exposure window as a technician meets it: opened from the toolbar on a hand-made
// measurement, its figures, periods and hourly bars read off the screen, references ticked
// and an own value typed, the report saved as a PDF file under the offered name, the
// choices found again after closing, a new threshold in the preferences and a second load
// that rebuild it.
#include "charts/widgets/exposure_view.h"
#include "charts/widgets/frm_exposure.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "shell/file_folders.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/frm_settings.h"
#include "shell/widgets/main_entry.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <qcustomplot.h>
#include <unistd.h>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace fm;

namespace {
// 36 hours at a 10-minute step from 14/10/2026 08:00: 4 µT, 12 µT from 12:00 to 15:50,
// no data from 20:00 to 20:50 on the first day, 2 µT all of the second.
QByteArray SiteLog(double second) {
    QStringList lines{
        "Field Activity Log", "14/10/2026 08:00:00@15/10/2026 20:00:00@3", "10n", "216", "ID", "Site"};
    for (int i = 0; i < 216; ++i) {
        const double v = i >= 144 ? second : i >= 24 && i < 48 ? 12 : 4;
        lines << (i >= 72 && i < 78 ? QStringLiteral("-1 -1 -1 0")
                                    : QStringLiteral("%1 0.00 0.00  0").arg(v, 0, 'f', 2));
    }
    return test::LogText(lines);
}

QString From(int day, int hour) {
    return QStringLiteral(" (") + ResString(4499).arg(DateTimeText(DateFromParts(2026, 10, day, hour))) +
           QLatin1Char(')');
}
}  // namespace

class ExposureWindowTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;

    static frmExposure *Press(frmMain *m, int button = 25) {
        QWidget *w = m->tbrToolbar->widgetForAction(m->Buttons[size_t(button)]);
        if (!w || !w->isEnabled()) return nullptr;
        QTest::mouseClick(w, Qt::LeftButton);
        return test::Shown<frmExposure>(m);
    }
    static QString Verdict(frmExposure *f, int k) { return f->references[size_t(k)].verdict->text(); }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
    }
    void cleanupTestCase() { ::close(pty_); }

    void aTechniciansAssessment() {
        OptionsRecord o = OptionsRecord::Defaults();
        o.FirstRun = false;
        o.ShowWarnings = false;
        o.OpenGraphTe = o.OpenGraphSt = o.OpenSource = false;
        o.Language = 1;
        o.Soglia = 10;
        test::WriteBytes(OptionsPath(), o.ToBytes());
        const QString site = dir_.filePath(QStringLiteral("site.log")),
                      next = dir_.filePath(QStringLiteral("next.log"));
        test::WriteBytes(site, SiteLog(2));
        test::WriteBytes(next, SiteLog(20));
        Data() = MeasurementData{};
        QVERIFY(StartUp(0, {}));
        frmMain *m = MainForm();
        m->resize(1280, 800);

        // Off without data, in the toolbar and the menu alike; placed after the data list.
        QVERIFY(!Press(m));
        emit m->mnuGraph->aboutToShow();
        QVERIFY(!m->mnuSubGraph[3]->isEnabled());
        const QList<QAction *> bar = m->tbrToolbar->actions();
        QCOMPARE(bar.indexOf(m->Buttons[25]), bar.indexOf(m->Buttons[15]) + 1);
        QCOMPARE(m->Buttons[25]->toolTip(), ResString(4472));
        test::OpenFromMenu(m, site);
        emit m->mnuGraph->aboutToShow();
        QVERIFY(m->mnuSubGraph[3]->isEnabled());
        QCOMPARE(m->mnuSubGraph[3]->shortcut(), QKeySequence(Qt::Key_F7));

        frmExposure *f = Press(m);
        QVERIFY(f);
        test::Snapshot(m, QStringLiteral("exposure_window"));
        QCOMPARE(f->lblHighest->text(), QStringLiteral("4.00 µT") + From(14, 8));
        QCOMPARE(f->lblMaximum->text(), QStringLiteral("12.00 µT"));
        QCOMPARE(f->lblAboveCaption->text(), QStringLiteral("Above the threshold of 10 µT"));
        QCOMPARE(f->lblAbove->text(), QStringLiteral("4 h 00 min 00 s (11.4 %)"));  // 24 of 210 samples
        QCOMPARE(f->lblLongest->text(),
                 QStringLiteral("4 h 00 min 00 s, from ") + DateTimeText(DateFromParts(2026, 10, 14, 12)));
        QCOMPARE(f->grdPeriods->rowCount(), 2);
        QCOMPARE(f->grdPeriods->item(0, 1)->text(), QStringLiteral("4.00"));
        QCOMPARE(f->grdPeriods->item(0, 3)->text(), QStringLiteral("95.8 %"));
        QCOMPARE(f->grdPeriods->item(0, 4)->text(), QString());
        QCOMPARE(f->grdPeriods->item(1, 4)->text(), QStringLiteral("partial"));
        auto *bars = f->pltHours->findChild<QCPBars *>(QStringLiteral("hourlyBars"));
        QVERIFY(bars);
        QCOMPARE(bars->data()->size(), 23);  // none at 20:00
        for (auto it = bars->data()->constBegin(); it != bars->data()->constEnd(); ++it)
            QVERIFY(it->key != 20);

        // The defaults: the Italian values and the EU level ticked, ICNIRP not.
        QCOMPARE(Verdict(f, 0), QStringLiteral("exceeded: 4.00 µT") + From(14, 8));
        QCOMPARE(Verdict(f, 3), QStringLiteral("met: 12.00 µT"));
        QCOMPARE(Verdict(f, 4), QString());
        QTest::mouseClick(f->references[4].check, Qt::LeftButton, {}, QPoint(8, 8));
        QCOMPARE(Verdict(f, 4), QStringLiteral("met: 12.00 µT"));
        QTest::mouseClick(f->references[1].check, Qt::LeftButton, {}, QPoint(8, 8));
        QCOMPARE(Verdict(f, 1), QString());

        // An own value: typed, it is ticked and judged; a bad one is said so.
        QTest::mouseClick(f->txtOwnValue, Qt::LeftButton);
        QTest::keyClicks(f->txtOwnValue, QStringLiteral("0"));
        QVERIFY(f->chkOwn->isChecked());
        QCOMPARE(f->lblOwnVerdict->text(), ResString(4497));
        QTest::keyClicks(f->txtOwnValue, QStringLiteral(",5"));  // the comma types a point
        QCOMPARE(f->txtOwnValue->text(), QStringLiteral("0.5"));
        QCOMPARE(f->lblOwnVerdict->text(), QStringLiteral("exceeded: 12.00 µT"));
        f->cboOwnBasis->setFocus();
        QTest::keyClick(f->cboOwnBasis, Qt::Key_Up);
        QCOMPARE(f->cboOwnBasis->currentText(), QStringLiteral("24-hour median"));
        QCOMPARE(f->lblOwnVerdict->text(), QStringLiteral("exceeded: 4.00 µT") + From(14, 8));
        QTest::keyClicks(f->txtOwnName, QStringLiteral("Client limit"));
        QTest::keyClicks(f->txtSite, QStringLiteral("Via Roma 1"));
        QTest::mouseClick(f->txtNotes->viewport(), Qt::LeftButton);
        QTest::keyClicks(f->txtNotes, QStringLiteral("Cabin behind the wall"));
        QTest::keyClick(f->txtNotes, Qt::Key_Return);
        QTest::keyClicks(f->txtNotes, QStringLiteral("door=open \\n [x]"));

        // The report: offered under the log's name in the images' folder, written whole.
        const QString pdfs = dir_.filePath(QStringLiteral("pdfs"));
        QDir().mkpath(pdfs);
        RememberFolder(FileKind::Images, pdfs + QStringLiteral("/old.png"));
        CommonDialog asked;
        CommonDialog::SetResponder(
            [&](const CommonDialog &d, bool save) -> std::optional<CommonDialog::Answer> {
                asked = d;
                if (!save) return std::nullopt;
                return CommonDialog::Answer{pdfs + QStringLiteral("/client"), 1};
            });
        QTest::mouseClick(f->btnReport, Qt::LeftButton);
        CommonDialog::SetResponder(nullptr);
        QCOMPARE(asked.FileName, QStringLiteral("site-exposure.pdf"));
        QCOMPARE(asked.InitDir, pdfs);
        QVERIFY(test::ReadBytes(pdfs + QStringLiteral("/client.pdf")).startsWith("%PDF"));

        // Pressed again it comes forward, no second window; closed and opened from the
        // menu it has every choice back.
        QCOMPARE(Press(m), f);
        QCOMPARE(m->findChildren<frmExposure *>().size(), 1);
        f->parentWidget()->close();
        QTest::qWait(20);
        m->mnuSubGraph[3]->trigger();
        f = test::Shown<frmExposure>(m);
        QVERIFY(f);
        QVERIFY(f->references[4].check->isChecked() && !f->references[1].check->isChecked());
        QVERIFY(f->chkOwn->isChecked());
        QCOMPARE(f->txtOwnValue->text(), QStringLiteral("0.5"));
        QCOMPARE(f->txtOwnName->text(), QStringLiteral("Client limit"));
        QCOMPARE(f->cboOwnBasis->currentIndex(), 0);
        QCOMPARE(f->txtSite->text(), QStringLiteral("Via Roma 1"));
        QCOMPARE(f->txtNotes->toPlainText(), QStringLiteral("Cabin behind the wall\ndoor=open \\n [x]"));

        // A new threshold in the preferences: the figures follow at once.
        test::WhenUp<frmSettings>([](frmSettings *s) {
            s->optSoglia[3]->setChecked(true);
            s->txtSoglia->setText(QStringLiteral("3"));
            QTest::mouseClick(s->btnOk, Qt::LeftButton);
        });
        m->tbrToolbar_ButtonClick(17);
        QCOMPARE(f->lblAboveCaption->text(), QStringLiteral("Above the threshold of 3 µT"));
        QCOMPARE(f->lblAbove->text(), QStringLiteral("23 h 00 min 00 s (65.7 %)"));  // 138 of 210

        // A second load builds it anew on the new data.
        QPointer<frmExposure> old = f;
        test::OpenFromMenu(m, next);
        QVERIFY(old.isNull());
        f = test::Shown<frmExposure>(m);
        QVERIFY(f);
        QCOMPARE(f->lblMaximum->text(), QStringLiteral("20.00 µT"));
        QCOMPARE(f->lblHighest->text(), QStringLiteral("20.00 µT") + From(15, 8));
        QVERIFY(f->windowTitle().endsWith(next + QLatin1Char(']')));
        test::CloseMain(m);
    }
};

QTEST_MAIN(ExposureWindowTest)
#include "exposure_window_test.moc"
