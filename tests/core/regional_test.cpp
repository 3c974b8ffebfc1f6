// Dates and numbers as the regional settings write them, and the tolerant readers.
#include "core/regional.h"
#include "core/fault.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;
using test::ScopedLocale;

TEST(Regional, GeneralDateFollowsTheLocale) {
    const double noon = DateFromParts(2026, 3, 7, 14, 5, 9);
    const double midnight = DateFromParts(2026, 3, 7);
    {
        ScopedLocale it(QStringLiteral("it_IT"));
        EXPECT_EQ(GeneralDate(noon), QStringLiteral("07/03/2026 14:05:09"));
        EXPECT_EQ(GeneralDate(midnight), QStringLiteral("07/03/2026"));
        EXPECT_EQ(ShortDate(noon), QStringLiteral("07/03/2026"));
        EXPECT_EQ(LongTime(noon), QStringLiteral("14:05:09"));
    }
    {
        ScopedLocale us(QStringLiteral("en_US"));
        EXPECT_EQ(GeneralDate(noon), QStringLiteral("3/7/2026 2:05:09 PM"));
        EXPECT_EQ(GeneralDate(midnight), QStringLiteral("3/7/2026"));
        EXPECT_EQ(LongTime(midnight), QStringLiteral("12:00:00 AM"));
    }
}

TEST(Regional, ParseDateReadsEitherPlatformsLogs) {
    double d = 0;
    for (const char *name : {"it_IT", "en_US"}) {
        ScopedLocale loc(QString::fromLatin1(name));
        // The placeholder reads the same under every order.
        ASSERT_TRUE(ParseDate(u"01/01/01 01:01:01", &d));
        EXPECT_EQ(d, DateFromParts(2001, 1, 1, 1, 1, 1));
        // A day above 12 can only be a day.
        ASSERT_TRUE(ParseDate(u"13/02/2024 08:00:00", &d));
        EXPECT_EQ(d, DateFromParts(2024, 2, 13, 8));
        ASSERT_TRUE(ParseDate(u"02/13/2024 8:00:00 PM", &d));
        EXPECT_EQ(d, DateFromParts(2024, 2, 13, 20));
        ASSERT_TRUE(ParseDate(u"2024-02-13T08:30:00", &d));
        EXPECT_EQ(d, DateFromParts(2024, 2, 13, 8, 30));
        ASSERT_TRUE(ParseDate(u"13.02.2024 14.30.00", &d));  // older Italian settings
        EXPECT_EQ(d, DateFromParts(2024, 2, 13, 14, 30));
        ASSERT_TRUE(ParseDate(u"14:30", &d));
        EXPECT_EQ(d, DateFromParts(1899, 12, 30, 14, 30));
        for (const char16_t *bad : {u"", u"tomorrow", u"31/02/2024", u"12/12/2024 25:00:00", u"1/2"})
            EXPECT_FALSE(IsDate(bad)) << QString::fromUtf16(bad).toStdString();
        // What GeneralDate writes reads back to the second.
        const double t = DateFromParts(2026, 11, 23, 9, 8, 7);
        ASSERT_TRUE(ParseDate(GeneralDate(t), &d));
        EXPECT_EQ(d, t);
    }
    {
        ScopedLocale it(QStringLiteral("it_IT"));
        ASSERT_TRUE(ParseDate(u"03/04/2024", &d));
        EXPECT_EQ(d, DateFromParts(2024, 4, 3));  // the locale's own order first
        ASSERT_TRUE(ParseDate(u"5/6/45", &d));
        EXPECT_EQ(d, DateFromParts(1945, 6, 5));
    }
    {
        ScopedLocale us(QStringLiteral("en_US"));
        ASSERT_TRUE(ParseDate(u"03/04/2024", &d));
        EXPECT_EQ(d, DateFromParts(2024, 3, 4));
    }
}

TEST(Regional, DateArithmetic) {
    const double start = DateFromParts(2026, 1, 31, 23, 59, 50);
    EXPECT_EQ(DateAdd(QStringLiteral("s"), 10, start), DateFromParts(2026, 2, 1));
    EXPECT_EQ(DateAdd(QStringLiteral("n"), 90, start), DateFromParts(2026, 2, 1, 1, 29, 50));
    EXPECT_EQ(DateAdd(QStringLiteral("h"), 24 * 365, start), DateFromParts(2027, 1, 31, 23, 59, 50));
    EXPECT_EQ(DateAdd(QStringLiteral("m"), 1, start), DateFromParts(2026, 2, 28, 23, 59, 50));
    EXPECT_EQ(DateAdd(QStringLiteral("d"), -3, DateFromParts(1899, 12, 31, 6)),
              DateFromParts(1899, 12, 28, 6));
    EXPECT_THROW(DateAdd(QStringLiteral("x"), 1, start), Fault);
    // Boundaries crossed, as date arithmetic counts them.
    EXPECT_EQ(DateDiff(QStringLiteral("n"), DateFromParts(2026, 1, 1, 0, 0, 59),
                       DateFromParts(2026, 1, 1, 0, 1, 0)),
              1);
    EXPECT_EQ(DateDiff(QStringLiteral("d"), start, DateFromParts(2026, 2, 1)), 1);
    EXPECT_EQ(DateDiff(QStringLiteral("s"), DateFromParts(2026, 1, 2), DateFromParts(2026, 1, 1)), -86400);
    EXPECT_EQ(DateDiff(QStringLiteral("m"), DateFromParts(2025, 12, 31), DateFromParts(2026, 1, 1)), 1);
}

TEST(Regional, NumberPatternsRoundHalfToEven) {
    ScopedLocale us(QStringLiteral("en_US"));
    EXPECT_EQ(FormatNumber(0.125, u"#0.00"), QStringLiteral("0.12"));
    EXPECT_EQ(FormatNumber(0.135, u"#0.00"), QStringLiteral("0.14"));
    EXPECT_EQ(FormatNumber(1234.5, u"#0.00"), QStringLiteral("1234.50"));
    EXPECT_EQ(FormatNumber(-3.4f, u"0.00 "), QStringLiteral("-3.40 "));
    EXPECT_EQ(FormatNumber(-0.001, u"0.00 "), QStringLiteral("0.00 "));
    EXPECT_EQ(FormatNumber(12.25, u"0.0"), QStringLiteral("12.2"));
    EXPECT_EQ(FormatNumber(0.5, u"#.0000"), QStringLiteral(".5000"));
    EXPECT_EQ(FormatNumber(0.0, u"#.0000"), QStringLiteral(".0000"));
    EXPECT_EQ(FormatNumber(12.0, u"#.0000"), QStringLiteral("12.0000"));
    EXPECT_EQ(FormatNumber(1.5, u"0.##"), QStringLiteral("1.5"));
    EXPECT_EQ(FormatNumber(1.0, u"0.##"), QStringLiteral("1"));
    EXPECT_EQ(FormatNumber(3.14159, u"  #0.00"), QStringLiteral("  3.14"));
    EXPECT_EQ(FormatNumber(-3.14159, u"  #0.00"), QStringLiteral("  -3.14"));
    EXPECT_EQ(FormatNumber(1.234, u"\\B\\x \\= #0.00 µT"), QStringLiteral("Bx = 1.23 µT"));
    ScopedLocale it(QStringLiteral("it_IT"));
    EXPECT_EQ(FormatNumber(0.5, u"#.0000"), QStringLiteral(",5000"));
    EXPECT_EQ(FormatNumber(2.675, u"#0.00"), QStringLiteral("2,68"));
    EXPECT_EQ(Str(8192.0 * 8 / 1024), QStringLiteral(" 64"));
    EXPECT_EQ(Str(-1.5), QStringLiteral("-1.5"));  // Str keeps the point
    EXPECT_DOUBLE_EQ(RoundHalfEven(0.125, 2), 0.12);
    EXPECT_DOUBLE_EQ(RoundHalfEven(6399.8046875, 2), 6399.8);
}

namespace {
template <class T>
concept Formats = requires(T v) { FormatNumber(v, u"0.00"); };
template <class T>
concept HasStr = requires(T v) { Str(v); };
template <class T>
concept Rounds = requires(T v) { RoundHalfEven(v, 2); };
}  // namespace

// A float is written from its own shortest text, never from the double it widens to;
// any other type has to say which it is, or the call does not compile.
TEST(Regional, FloatsReadAsTheirOwnDigits) {
    static_assert(Formats<float> && Formats<double> && HasStr<float> && HasStr<double> && HasStr<int32_t>);
    static_assert(!Formats<int> && !Formats<long double> && !Formats<int16_t> && !HasStr<int16_t>);
    static_assert(Rounds<double> && !Rounds<float>);

    ScopedLocale it(QStringLiteral("it_IT"));
    EXPECT_EQ(Str(3.46f), QStringLiteral(" 3.46"));
    EXPECT_EQ(Str(1.1f), QStringLiteral(" 1.1"));
    EXPECT_EQ(Str(0.1f + 0.2f), QStringLiteral(" .3"));
    EXPECT_EQ(Str(0.1 + 0.2), QStringLiteral(" .30000000000000004"));  // a double keeps its own digits
    EXPECT_EQ(Str(-0.165f), QStringLiteral("-.165"));
    EXPECT_EQ(Str(3), QStringLiteral(" 3"));
    EXPECT_EQ(Str(int64_t(-40000)), QStringLiteral("-40000"));
    // At a tie the float's digits decide: 0.165f is just above 0.165 as a double.
    EXPECT_EQ(FormatNumber(0.165f, u"#0.00"), QStringLiteral("0,16"));
    EXPECT_EQ(FormatNumber(double(0.165f), u"#0.00"), QStringLiteral("0,17"));
    EXPECT_EQ(FormatNumber(0.175f, u"#0.00"), QStringLiteral("0,18"));  // just below, half to even
    EXPECT_EQ(FormatNumber(0.00025f, u"#.0000"), QStringLiteral(",0002"));
    EXPECT_EQ(FormatNumber(2.45f, u"#0.0"), QStringLiteral("2,4"));
    EXPECT_EQ(FormatNumber(3.46f, u"0.##########"), QStringLiteral("3,46"));
    EXPECT_EQ(FormatNumber(1.1f, u"0.##########"), QStringLiteral("1,1"));
    EXPECT_EQ(FormatNumber(0.1f + 0.2f, u"0.##########"), QStringLiteral("0,3"));
}

TEST(Regional, LeadingNumberReaderAndConversions) {
    EXPECT_EQ(Val(u"1h"), 1);
    EXPECT_EQ(Val(u" 1 2"), 12);
    EXPECT_EQ(Val(u"-1.5e"), -1.5);
    EXPECT_EQ(Val(u"2.5E2x"), 250);
    EXPECT_EQ(Val(u""), 0);
    EXPECT_EQ(Val(u"abc"), 0);
    EXPECT_EQ(Val(u"3,5"), 3);
    EXPECT_EQ(Val(u"\t-7\n"), -7);
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(-32768), -32768);
    EXPECT_THROW(CInt(32767.5), Fault);
    EXPECT_THROW(CLng(3e9), Fault);
    double v = 0;
    ScopedLocale it(QStringLiteral("it_IT"));
    ASSERT_TRUE(ParseNumber(u"0,35", &v));
    EXPECT_DOUBLE_EQ(v, 0.35);
    ASSERT_TRUE(ParseNumber(u"0.35", &v));
    EXPECT_DOUBLE_EQ(v, 0.35);
    EXPECT_FALSE(ParseNumber(u"0.3x", &v));
}
