// The exposure figures on data sets made by hand, the verdicts, and one comparison with a
// plain computation on random data.
#include "analysis/exposure.h"
#include "core/data_set.h"
#include "core/regional.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <random>

using namespace fm;

namespace {
const double kStart = DateFromParts(2026, 3, 1, 12);  // noon

// The values from `start` at the step given; -1 is a sample without data.
MeasurementData Set(std::vector<double> values, const char *unit = "h", int step = 1, double start = kStart) {
    MeasurementData d;
    d.DataCount = int32_t(values.size());
    values.insert(values.begin(), 0.0);
    d.DataValue = values;
    d.DataStart = start;
    d.DataStep = step;
    d.DataStepUnit = QString::fromLatin1(unit);
    return d;
}

// A period as expected: samples, with data, median, "c" when complete and "p" when partial.
using Period = std::tuple<int32_t, int32_t, std::optional<double>, std::string>;
const ExposureReference kQuality = *FindReference(u"it-quality");  // 3 µT, 24-hour median
}  // namespace

TEST(Exposure, DailyPeriodsAndTheirVerdict) {
    using V = Verdict;
    const auto full = [](double median) { return Period{24, 24, median, "c"}; };
    const struct {
        std::vector<std::pair<int, double>> levels;  // counts of equal values, from noon
        std::vector<Period> periods;
        Verdict quality = Verdict::Met;
        const char *unit = "h";
        int step = 1;
    } cases[] = {
        {{{48, 3}}, {full(3), full(3)}},  // 3 is not above 3
        // Periods run from the start, not from midnight: the first mixes both levels.
        {{{12, 1}, {36, 4}}, {full(2.5), full(4)}, V::Exceeded},
        {{{24, 1}, {24, -1}, {24, 3.5}}, {full(1), {24, 0, {}, ""}, full(3.5)}, V::Exceeded},
        // Ten samples a day: nine with data are 90 %, eight are not enough to exceed.
        {{{9, 2}, {1, -1}, {8, 5}, {2, 0}}, {{10, 9, 2, "c"}, {10, 8, 5, ""}}, V::NotConclusive, "n", 144},
        {{{24, 1}, {1, 3}, {1, -1}}, {full(1), {2, 1, 3, "p"}}, V::NotConclusive},
        {{{10, 1}}, {{4, 4, 1, "c"}, {3, 3, 1, "c"}, {3, 3, 1, "cp"}}, V::Met, "h", 7},
        {{{2881, 1}}, {{2880, 2880, 1, "c"}, {1, 1, 1, "cp"}}, V::Met, "s", 30},
    };
    for (const auto &c : cases) {
        std::vector<double> values;
        for (const auto &[count, value] : c.levels) values.insert(values.end(), size_t(count), value);
        const ExposureFigures f = ComputeExposure(Set(values, c.unit, c.step), 1);
        std::vector<Period> got;
        for (const DailyPeriod &p : f.periods)
            got.emplace_back(p.samples, p.valid, p.median,
                             std::string(p.complete ? "c" : "") + (p.partial ? "p" : ""));
        EXPECT_EQ(got, c.periods) << values.size();
        EXPECT_EQ(Judge(f, kQuality).verdict, c.quality) << values.size();
    }
}

TEST(Exposure, PercentilesTakeTheRankAbove) {
    using V = Verdict;
    std::vector<double> twenty(20);  // 20 down to 1
    std::iota(twenty.rbegin(), twenty.rend(), 1.0);
    const struct {
        double p50, p90, p95, p99, max;
        Verdict atTen;  // the maximum against 10
        std::vector<double> values;
    } cases[] = {
        {5, 9, 10, 10, 10, V::Met, {3, -1, 10, 1, 7, 0, 2, 9, 4, 8, 6, 5}},
        {0.4, 0.7, 0.7, 0.7, 0.7, V::Met, {0.1, 0.7, 0.3, 0.6, 0.2, 0.5, 0.4}},
        {10, 18, 19, 20, 20, V::Exceeded, twenty},  // 95 % of 20 falls on rank 19 itself
    };
    const ExposureReference ten = CustomReference(QStringLiteral("mine"), 10, ExposureBasis::Maximum);
    for (const auto &c : cases) {
        const ExposureFigures f = ComputeExposure(Set(c.values), 1);
        EXPECT_EQ(std::tie(*f.p50, *f.p90, *f.p95, *f.p99, *f.maximum),
                  std::tie(c.p50, c.p90, c.p95, c.p99, c.max));
        EXPECT_EQ(Judge(f, ten).verdict, c.atTen) << c.max;
    }
}

TEST(Exposure, HoursAndTimeAboveThreshold) {
    // 20-minute steps from 23:00; 0.7 is not above 0.7f, as the warnings count.
    const ExposureFigures f =
        ComputeExposure(Set({0.7, 2, 3, 4, 5, -1, 6, 2, 2, 2}, "n", 20, DateFromParts(2026, 3, 1, 23)), 0.7f);
    for (size_t h = 3; h < 23; ++h) EXPECT_FALSE(f.hourlyMean[h]);
    EXPECT_EQ(std::tie(*f.hourlyMean[23], *f.hourlyMean[0], *f.hourlyMean[1], *f.hourlyMean[2]),
              std::make_tuple((0.7 + 2 + 3) / 3, 4.5, 10.0 / 3, 2.0));
    EXPECT_EQ(std::tie(f.aboveSamples, f.aboveSeconds), std::make_tuple(8, 8 * 1200.0));
    EXPECT_DOUBLE_EQ(f.abovePercent, 800.0 / 9);
    // The mark cuts two runs of four; the first counts.
    EXPECT_EQ(f.longestRunSeconds, 4 * 1200);
    EXPECT_EQ(f.longestRunStart, DateFromParts(2026, 3, 1, 23, 20));
    EXPECT_DOUBLE_EQ(*f.mean, 26.7 / 9);
}

TEST(Exposure, NothingToMeasure) {
    const ExposureFigures none = ComputeExposure(Set({}), 1), monthly = ComputeExposure(Set({2, 4}, "m"), 1);
    EXPECT_TRUE(none.periods.empty() && !none.p50 && !none.mean && monthly.periods.empty() &&
                *monthly.p50 == 2);
    EXPECT_EQ(Judge(none, kQuality).verdict, Verdict::NotConclusive);
    EXPECT_EQ(Judge(none, *FindReference(u"icnirp-public")).verdict, Verdict::NotConclusive);
}

TEST(Exposure, AgreesWithAPlainComputation) {
    std::mt19937 rng(7);
    const std::pair<const char *, int> steps[] = {{"s", 97}, {"n", 13}, {"h", 2}, {"d", 2}};
    for (const auto &[unit, step] : steps) {
        std::vector<double> v(4000);
        for (double &x : v) x = rng() % 30 == 0 ? -1.0 : double(rng() % 500 + 1) / 100;
        const MeasurementData d = Set(v, unit, step, DateFromParts(2026, 3, 28, 14, 37, 20));
        const ExposureFigures f = ComputeExposure(d, 2.5f);
        std::map<int64_t, std::vector<double>> days;  // by 24 hours from the start
        std::vector<double> all, hours[24];
        int32_t run = 0, longest = 0;
        for (int32_t i = 1; i <= d.DataCount; ++i) {
            const double x = d.DataValue[size_t(i)], when = d.SampleDate(i);
            std::vector<double> &day = days[DateDiff(QStringLiteral("s"), d.DataStart, when) / 86400];
            run = x > 0 && float(x) > 2.5f ? run + 1 : 0;
            longest = std::max(longest, run);
            if (x < 0) continue;
            day.push_back(x);
            all.push_back(x);
            hours[DateToDateTime(when).time().hour()].push_back(x);
        }
        ASSERT_EQ(f.periods.size(), days.size()) << unit;
        auto period = f.periods.begin();
        for (auto &[index, x] : days) {
            std::sort(x.begin(), x.end());
            const size_t h = x.size() / 2;
            EXPECT_EQ(period->start, DateAdd(QStringLiteral("d"), double(index), d.DataStart));
            EXPECT_EQ((period++)->median, x.empty()      ? std::nullopt
                                          : x.size() % 2 ? std::optional(x[h])
                                                         : std::optional((x[h - 1] + x[h]) / 2));
        }
        std::sort(all.begin(), all.end());
        const auto pct = [&](int p) { return all[size_t(std::ceil(p * double(all.size()) / 100)) - 1]; };
        EXPECT_EQ(std::tie(*f.p50, *f.p90, *f.p95, *f.p99),
                  std::make_tuple(pct(50), pct(90), pct(95), pct(99)));
        EXPECT_EQ(f.longestRunSeconds, longest * f.stepSeconds);
        for (size_t h = 0; h < 24; ++h) {
            const double sum = std::accumulate(hours[h].begin(), hours[h].end(), 0.0);
            EXPECT_NEAR(f.hourlyMean[h].value_or(-1), hours[h].empty() ? -1 : sum / double(hours[h].size()),
                        1e-9);
        }
    }
}
