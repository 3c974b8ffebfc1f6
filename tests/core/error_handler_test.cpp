// The fault box and the trap that every procedure sets.
#include "core/fault.h"
#include "support/recorder_host.h"

#include <gtest/gtest.h>

using namespace fm;

TEST(ErrorHandler, BoxTextIsFixedAndAligned) {
    test::RecorderHost host;
    EXPECT_FALSE(ErrorHandler(QStringLiteral("LoadFile"), 62, QStringLiteral("Fluxmere"),
                              QStringLiteral("Input past end of file")));
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].title, QStringLiteral("ERROR! (Fluxmere)"));
    EXPECT_EQ(host.boxes[0].text, QStringLiteral("An unpredictable error occurred.\r\n"
                                                 "Error Raised by  : LoadFile\r\n"
                                                 "Error Source     : Fluxmere\r\n"
                                                 "Error Number     : 62\r\n"
                                                 "Error Description: Input past end of file\r\n"));
    EXPECT_EQ(host.boxes[0].mode, int(SystemBoxKind::CriticalOk));
    host.answers = {true};
    EXPECT_TRUE(ErrorHandler(QStringLiteral("X"), 5, QString(), QString(), true));
    EXPECT_TRUE(host.boxes[1].text.endsWith(
        QStringLiteral("\r\nIt may be possible to proceed.\r\nDo you want to ignore the error?\r\n")));
    EXPECT_EQ(host.boxes[1].mode, int(SystemBoxKind::CriticalYesNo));
}

TEST(ErrorHandler, TrapReportsAndGivesTheFallback) {
    test::RecorderHost host;
    EXPECT_FALSE(Trap("SaveFile", false, []() -> bool { Raise(err::PathAccess); }));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Error Raised by  : SaveFile")));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Error Number     : 75")));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("Path/File access error")));
    EXPECT_EQ(Trap("Sum", -1, [] { return 2; }), 2);
    EXPECT_EQ(Trap("Vector", -1, []() -> int { throw std::out_of_range("index"); }), -1);
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("index")));
    EXPECT_EQ(host.boxes.size(), 2u);
}
