// The command line at start-up: "-L file" pairs load in order, anything else stops it;
// bare file names, as desktop launchers pass them, load too.
#include "shell/command_line.h"
#include "core/data_set.h"
#include "core/startup.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

TEST(CommandLine, LoadsEachFileAndStopsAtAnUnknownParameter) {
    test::Fresh fresh;
    test::RecorderHost host;
    const QString first = fresh.Path(QStringLiteral("first day.log"));
    const QString second = fresh.Path(QStringLiteral("second.log"));
    test::WriteDayLog(first, 12);
    test::WriteDayLog(second, 30);
    int loaded = 0;
    const auto count = [&] { ++loaded; };

    // The blank in the first name makes the tail quote it.
    GestioneCommandLine(CommandTail({QStringLiteral("-L"), first, QStringLiteral("-L"), second}), count);
    EXPECT_EQ(loaded, 2);
    EXPECT_EQ(Data().DataCount, 30);  // the last one stays

    loaded = 0;
    GestioneCommandLine(CommandTail({QStringLiteral("-X"), first, QStringLiteral("-L"), second}), count);
    EXPECT_EQ(loaded, 0);
    ASSERT_FALSE(host.boxes.empty());
    EXPECT_EQ(host.boxes.back().text, QStringLiteral("Parametro sconosciuto in riga di comando"));
    EXPECT_TRUE(host.boxes.back().system);

    // A file that does not load is reported by the loader and does not count.
    const size_t before = host.boxes.size();
    GestioneCommandLine(CommandTail({QStringLiteral("-L"), fresh.Path(QStringLiteral("none.log"))}), count);
    EXPECT_EQ(loaded, 0);
    EXPECT_GT(host.boxes.size(), before);
}

TEST(CommandLine, BareFileNamesLoadAsALauncherPassesThem) {
    test::Fresh fresh;
    test::RecorderHost host;
    const QString first = fresh.Path(QStringLiteral("from the file manager.log"));
    const QString second = fresh.Path(QStringLiteral("second.log"));
    test::WriteDayLog(first, 12);
    test::WriteDayLog(second, 30);
    int loaded = 0;
    const auto count = [&] { ++loaded; };

    GestioneCommandLine(CommandTail({first}), count);
    EXPECT_EQ(loaded, 1);
    EXPECT_EQ(Data().DataCount, 12);
    GestioneCommandLine(CommandTail({first, second}), count);
    EXPECT_EQ(loaded, 3);
    EXPECT_EQ(Data().DataCount, 30);
    EXPECT_TRUE(host.boxes.empty());

    // An option anywhere keeps the pairs: a bare name before it is an unknown parameter.
    loaded = 0;
    GestioneCommandLine(CommandTail({first, QStringLiteral("-L"), second}), count);
    EXPECT_EQ(loaded, 0);
    ASSERT_FALSE(host.boxes.empty());
    EXPECT_EQ(host.boxes.back().text, QStringLiteral("Parametro sconosciuto in riga di comando"));
}
