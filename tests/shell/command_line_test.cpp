// The command line at start-up: "-L file" pairs load in order, anything else stops it;
// bare file names, as desktop launchers pass them, load too.
#include "shell/command_line.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/startup.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

TEST(CommandLine, LoadsEachFileInOrderAndStopsAtAnUnknownParameter) {
    test::Fresh fresh;
    test::RecorderHost host;
    // The blanks in the first name make the tail quote it.
    const QString first = fresh.Path(QStringLiteral("from the file manager.log"));
    const QString second = fresh.Path(QStringLiteral("second.log")), L = QStringLiteral("-L");
    test::WriteDayLog(first, 12);
    test::WriteDayLog(second, 30);
    const QString unknown = QStringLiteral("Parametro sconosciuto in riga di comando");
    const struct {
        QStringList args;
        int loaded, count;  // the last file loaded stays
        QString box;
    } cases[] = {
        {{L, first, L, second}, 2, 30, {}},
        {{first}, 1, 12, {}},
        {{second, first}, 2, 12, {}},
        {{QStringLiteral("-X"), first, L, second}, 0, 0, unknown},
        {{first, L, second}, 0, 0, unknown},  // an option anywhere keeps the pairs
        {{L, fresh.Path(QStringLiteral("none.log"))}, 0, 0, ResString(21)},  // the loader's own box
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(qPrintable(c.args.join(QLatin1Char(' '))));
        Data() = MeasurementData{};
        host.boxes.clear();
        int loaded = 0;
        GestioneCommandLine(CommandTail(c.args), [&] { ++loaded; });
        EXPECT_EQ(loaded, c.loaded);
        EXPECT_EQ(Data().DataCount, c.count);
        EXPECT_EQ(host.LastBox(), c.box);
    }
}
