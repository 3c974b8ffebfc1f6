// The texts the long tables make fast against the general formatters they stand for:
// dates across month, year and summer-time changes, in the Italian and the US forms,
// and numbers at and around ties.
#include "core/cp1252.h"
#include "core/regional.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <random>

using namespace fm;
using test::ScopedLocale;

namespace {
// The machine's zone for the life of the object: naive dates must not care.
class ScopedZone {
public:
    explicit ScopedZone(const char *zone) {
        if (const char *tz = std::getenv("TZ")) previous_ = tz;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~ScopedZone() {
        if (previous_.empty())
            unsetenv("TZ");
        else
            setenv("TZ", previous_.c_str(), 1);
        tzset();
    }

private:
    std::string previous_;
};

QString FixedText(const FixedNumber &f, double v, int width = 0, const char *prefix = "") {
    QString s;
    f.Append(s, v, width, prefix);
    return s;
}
QString FixedText(const FixedNumber &f, float v, int width = 0, const char *prefix = "") {
    QString s;
    f.Append(s, v, width, prefix);
    return s;
}
}  // namespace

TEST(TableText, DateTextsMatchTheGeneralFormsAcrossBoundaries) {
    ScopedZone rome("Europe/Rome");  // 29/03/2026 02:00 does not exist there, 25/10 02:30 twice
    // Around midnight of the year's end, the month's ends and both summer-time changes, at
    // a 7-second step so that every second of a minute comes up.
    const double starts[] = {DateFromParts(2025, 12, 31, 23, 50), DateFromParts(2026, 2, 28, 23, 55),
                             DateFromParts(2026, 3, 29, 1, 50),   DateFromParts(2026, 10, 25, 1, 50),
                             DateFromParts(2028, 2, 28, 23, 59),  DateFromParts(1899, 12, 29, 23, 59)};
    for (const char *name : {"it_IT", "en_US"}) {
        ScopedLocale loc(QString::fromLatin1(name));
        DateTexts texts, trimmed(true);
        for (const double start : starts) {
            for (int k = 0; k < 2000; ++k) {
                const double d = DateAdd(QStringLiteral("s"), 7.0 * k, start);
                SCOPED_TRACE(GeneralDate(d).toStdString());
                ASSERT_EQ(texts.ShortDate(d).text, ShortDate(d));
                ASSERT_EQ(texts.LongTime(d).text, LongTime(d));
                ASSERT_EQ(texts.LongTime(d).bytes, ToCp1252(LongTime(d)));
                ASSERT_EQ(texts.General(d), GeneralDate(d));
                ASSERT_EQ(trimmed.ShortDate(d).text, ShortDate(d).trimmed());
            }
        }
        // The hour that summer time skips is still written as it was measured.
        const double skipped = DateFromParts(2026, 3, 29, 2, 30);
        EXPECT_EQ(texts.General(skipped),
                  QString::fromLatin1(std::string(name) == "it_IT" ? "29/03/2026 02:30:00"
                                                                   : "3/29/2026 2:30:00 AM"));
        EXPECT_EQ(GeneralDate(skipped), texts.General(skipped));
    }
}

TEST(TableText, FixedNumbersMatchThePatternFormatter) {
    const QChar mark = DecimalMark();
    const FixedNumber csv(0, 4), list(1, 2);
    const auto agree = [&](auto v) {
        ASSERT_EQ(FixedText(csv, v), FormatNumber(v, u"#.0000")) << v;
        ASSERT_EQ(FixedText(list, v), FormatNumber(v, u"#0.00")) << v;
    };
    // Ties and near ties of both types, signs, zeros, large values, no number.
    for (const double v : {0.0, -0.0, 0.125, 0.135, 1234.5, -0.001, -0.5, 12.0, 0.00005, 0.00015, 2.675,
                           -2.675, 1e11, 123456789.125, std::nan("")})
        agree(v);
    for (const float v : {0.165f, 0.125f, 3.46f, -3.4f, 0.35f, 1.005f, 8.345f, 1e10f}) agree(v);
    // A sweep over values of two and of many decimals, as loaded and as worked out.
    std::mt19937 rng(540);
    std::uniform_real_distribution<double> any(-50, 50);
    for (int i = 0; i < 200000 && !HasFailure(); ++i) {
        agree(i < 100000 ? float(i - 50000) / 1000.0f : float(any(rng)));
        agree(i < 100000 ? double(i - 50000) / 200.0 : any(rng));
    }
    // Padding, the prefix, the regional mark, and the bytes of the files.
    EXPECT_EQ(FixedText(list, 3.5f, 8, "  "), QStringLiteral("    3") + mark + QStringLiteral("50"));
    EXPECT_EQ(FixedText(list, 12345.5, 8, "  "), QStringLiteral("  12345") + mark + QStringLiteral("50"));
    QByteArray bytes;
    list.Append(bytes, -0.255, 8);
    EXPECT_EQ(bytes, ToCp1252(QStringLiteral("   -0") + mark + QStringLiteral("26")));
}
