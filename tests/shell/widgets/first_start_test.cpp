// The language of a first start follows the system's locale; after that the options
// decide. Qt's own dialogs speak the same language. Run under an Italian and an English
// locale: FLUXMERE_EXPECT_LANGUAGE tells which the locale of the run should give.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "shell/widgets/common_dialog.h"
#include "shell/widgets/frm_main.h"
#include "shell/widgets/main_entry.h"
#include "support/modal.h"
#include "support/test_env.h"

#include <unistd.h>
#include <QAbstractButton>
#include <QTemporaryDir>
#include <QTest>

using namespace fm;

class FirstStartTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    int pty_ = -1;

    // The texts on the buttons of the colour dialog, as Qt labels them.
    static QStringList ColourDialogButtons(frmMain *m) {
        QStringList texts;
        test::WhenModal([&](QWidget *w) {
            for (QAbstractButton *b : w->findChildren<QAbstractButton *>()) texts << b->text();
            w->close();
        });
        m->dlgFile.ShowColor(m);
        return texts;
    }
    static void Restart() {
        frmMain *m = MainForm();
        ShutDown(m);
        delete m;
        QVERIFY(StartUp(0, {}));
    }

private slots:
    void initTestCase() {
        SetWritableDir(dir_.path());
        pty_ = test::LinkPtyAsCom1(dir_.path());
        QVERIFY(pty_ >= 0);
    }
    void cleanupTestCase() {
        if (frmMain *m = MainForm()) {
            ShutDown(m);
            delete m;
        }
        ::close(pty_);
    }

    void localeThenOptions() {
        const int expected = qEnvironmentVariableIntValue("FLUXMERE_EXPECT_LANGUAGE");
        const QString cancel[] = {QStringLiteral("Annulla"), QStringLiteral("Cancel")};
        QFile::remove(OptionsPath());
        QVERIFY(StartUp(0, {}));
        QCOMPARE(int(Options().Language), expected);
        QVERIFY(ColourDialogButtons(MainForm()).contains(cancel[expected]));

        // The other language, chosen in the preferences, holds from the next start on.
        Options().Language = uint8_t(1 - expected);
        Restart();
        QCOMPARE(int(Options().Language), 1 - expected);
        const QStringList buttons = ColourDialogButtons(MainForm());
        QVERIFY2(buttons.contains(cancel[1 - expected]), qPrintable(buttons.join(QLatin1Char(','))));
    }
};

QTEST_MAIN(FirstStartTest)
#include "first_start_test.moc"
