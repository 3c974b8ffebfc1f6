// The menu entry of the Surveyor import in the main window, against the Surveyor
// simulator linked as "Com 1": the views open on the new, unsaved data set.
#include "analysis/warnings.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/regional.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "support/day_window.h"
#include "support/modal.h"
#include "support/simulator.h"
#include "support/test_env.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

class SurveyorMenuTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;

private slots:
    void importOpensTheViewsOnUnsavedData() {
        SetWritableDir(dir_.path());
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

QTEST_MAIN(SurveyorMenuTest)
#include "surveyor_menu_test.moc"
