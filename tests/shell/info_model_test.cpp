// What the information panel says, with and without data, and its small helpers.
#include "shell/info_model.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

TEST(InfoPanel, TextsFollowTheSharedState) {
    test::Fresh fresh;
    test::ScopedLocale us(QStringLiteral("en_US"));
    InfoTexts t = BuildInfo();
    EXPECT_EQ(t.count, QStringLiteral("---"));
    EXPECT_EQ(t.values[3], QStringLiteral("---"));
    EXPECT_EQ(t.shortId, ResString(3021));
    EXPECT_EQ(t.monitorText, ResString(5));
    EXPECT_EQ(t.monitorBack, 0xE0E0E0u);
    EXPECT_EQ(t.commText, ResString(3023));
    EXPECT_EQ(t.commColor, 192u);

    MeasurementData &d = Data();
    d.DataPresent = true;
    d.SetShortID(QStringLiteral("   "));  // blanks only count as empty
    d.SetLongID(QStringLiteral("Cabina 3"));
    d.DataStep = 30;
    d.DataStepUnit = QStringLiteral("s");
    d.DataCount = 12;
    d.DataMin = 0.125f;
    d.DataMedian = 1234.5;
    d.MedianPos = 6;  // a median taken over the order by value
    d.SortedIndex.assign(13, 0);
    Shared().MonitorState = 1;
    Shared().CommOpen = true;
    t = BuildInfo();
    EXPECT_EQ(t.shortId, ResString(3021));
    EXPECT_EQ(t.step, QStringLiteral("30 ") + ResString(3013));
    EXPECT_EQ(t.values[0], QStringLiteral("0.12 µT"));
    EXPECT_EQ(t.values[3], QStringLiteral("1234.50 µT"));
    d.SortedIndex.clear();  // an import without the order: its median field means nothing
    EXPECT_EQ(BuildInfo().values[3], QStringLiteral("---"));
    EXPECT_EQ(t.monitorText, ResString(3010));
    EXPECT_EQ(t.commColor, 49152u);
    Shared().MonitorState = 0;
    EXPECT_EQ(BuildInfo().monitorBack, 0xC0FFC0u);
}

TEST(InfoPanel, PaddingAndMemoryEnd) {
    EXPECT_EQ(Formatta(QStringLiteral("12.34"), 8), QStringLiteral("   12.34"));
    EXPECT_EQ(Formatta(QStringLiteral("123456.78"), 8), QStringLiteral("123456.78"));
    EXPECT_EQ(MemoryCapacity(4096), 571);
    EXPECT_EQ(MemoryCapacity(8192), 1157);  // rounded, not cut
    test::Fresh fresh;
    Options().MemorySize = 65536;
    const double start = DateFromParts(2026, 1, 1);
    EXPECT_EQ(MemoryEndDate(start, 10, QStringLiteral("s")), DateAdd(QStringLiteral("s"), 93490, start));
}
