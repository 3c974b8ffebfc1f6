// The exposure figures on data sets made by hand, the verdicts, and one comparison with a
// plain computation on random data.
#include "analysis/exposure.h"
#include "core/data_set.h"
#include "core/regional.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <map>
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

// Counts of equal values, one after the other.
std::vector<double> Levels(std::initializer_list<std::pair<int, double>> parts) {
    std::vector<double> v;
    for (const auto &[count, value] : parts) v.insert(v.end(), size_t(count), value);
    return v;
}

struct Period {
    int samples, valid;
    std::optional<double> median;
    bool complete, partial;
};
}  // namespace

TEST(Exposure, DailyPeriods) {
    const struct {
        const char *what;
        MeasurementData d;
        std::vector<Period> periods;
    } cases[] = {
        {"constant", Set(Levels({{48, 2.5}})), {{24, 24, 2.5, true, false}, {24, 24, 2.5, true, false}}},
        // Periods run from the start, not from midnight: the first mixes both levels.
        {"step at midnight", Set(Levels({{12, 1}, {36, 4}})), {{24, 24, 2.5, true, false}, {24, 24, 4, true, false}}},
        {"a day without data", Set(Levels({{24, 1}, {24, -1}, {24, 0.5}})),
         {{24, 24, 1, true, false}, {24, 0, {}, false, false}, {24, 24, 0.5, true, false}}},
        // Ten samples a day: nine with data are 90 %, eight are not enough.
        {"coverage edge", Set(Levels({{9, 2}, {1, -1}, {8, 3}, {2, 0}}), "n", 144),
         {{10, 9, 2, true, false}, {10, 8, 3, false, false}}},
        {"short last day", Set(Levels({{24, 1}, {1, 3}, {1, -1}})), {{24, 24, 1, true, false}, {2, 1, 3, false, true}}},
        {"7-hour step", Set(Levels({{10, 1}}), "h", 7), {{4, 4, 1, true, false}, {3, 3, 1, true, false}, {3, 3, 1, true, true}}},
        {"daily step", Set({1, 2, 3}, "d"), {{1, 1, 1, true, false}, {1, 1, 2, true, false}, {1, 1, 3, true, false}}},
        {"30 s step", Set(Levels({{2881, 1}}), "s", 30), {{2880, 2880, 1, true, false}, {1, 1, 1, true, true}}},
        {"15 min step", Set(Levels({{95, 1}, {1, 7}}), "n", 15), {{96, 96, 1, true, false}}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        const ExposureFigures f = ComputeExposure(c.d, 1);
        ASSERT_EQ(f.periods.size(), c.periods.size());
        for (size_t k = 0; k < f.periods.size(); ++k) {
            const DailyPeriod &p = f.periods[k];
            const Period &e = c.periods[k];
            EXPECT_EQ(p.start, DateAdd(QStringLiteral("d"), double(k), kStart));
            EXPECT_EQ(std::tie(p.samples, p.valid, p.median, p.complete, p.partial),
                      std::tie(e.samples, e.valid, e.median, e.complete, e.partial)) << "period " << k;
            EXPECT_DOUBLE_EQ(p.coverage, double(e.valid) / e.samples);
        }
    }
}

TEST(Exposure, PercentilesTakeTheRankAbove) {
    const struct {
        std::vector<double> values;
        double p50, p90, p95, p99, max;
    } cases[] = {
        {{3, -1, 10, 1, 7, 0, 2, 9, 4, 8, 6, 5}, 5, 9, 10, 10, 10},
        {{0.1, 0.7, 0.3, 0.6, 0.2, 0.5, 0.4}, 0.4, 0.7, 0.7, 0.7, 0.7},
        {{0.35}, 0.35, 0.35, 0.35, 0.35, 0.35},
        {{}, 10, 18, 19, 20, 20},  // 95 % of 20 is 19 exactly
        {{}, 50, 90, 95, 99, 100},  // empty: max down to 1, with a mark
    };
    for (const auto &c : cases) {
        std::vector<double> v = c.values;
        if (v.empty()) {
            for (int i = int(c.max); i >= 1; --i) v.push_back(i);
            v.insert(v.begin() + 3, -1);
        }
        const ExposureFigures f = ComputeExposure(Set(v), 1);
        EXPECT_EQ(std::tie(*f.p50, *f.p90, *f.p95, *f.p99, *f.maximum), std::tie(c.p50, c.p90, c.p95, c.p99, c.max))
            << c.max;
    }
}

TEST(Exposure, HoursAndTimeAboveThreshold) {
    // 20-minute steps from 23:00; 0.7 is not above 0.7f, as the warnings count.
    const ExposureFigures f =
        ComputeExposure(Set({0.7, 2, 3, 4, -1, 6, 2, 2, 2}, "n", 20, DateFromParts(2026, 3, 1, 23)), 0.7f);
    for (size_t h = 2; h < 23; ++h) EXPECT_FALSE(f.hourlyMean[h]);
    EXPECT_DOUBLE_EQ(*f.hourlyMean[23], (0.7 + 2 + 3) / 3);
    EXPECT_DOUBLE_EQ(*f.hourlyMean[0], 5);
    EXPECT_DOUBLE_EQ(*f.hourlyMean[1], 2);
    EXPECT_EQ(f.aboveSamples, 7);
    EXPECT_EQ(f.aboveSeconds, 7 * 1200);
    EXPECT_EQ(f.abovePercent, 87.5);
    EXPECT_EQ(f.longestRunSeconds, 4 * 1200);  // the mark cuts 2, 3, 4 off from 6, 2, 2, 2
    EXPECT_EQ(f.longestRunStart, DateFromParts(2026, 3, 2, 0, 40));
    EXPECT_DOUBLE_EQ(*f.mean, 21.7 / 8);
}

TEST(Exposure, NothingToMeasure) {
    const ExposureFigures none = ComputeExposure(Set({}), 1);
    const ExposureFigures monthly = ComputeExposure(Set({2, 4}, "m"), 1);
    EXPECT_TRUE(none.periods.empty() && monthly.periods.empty() && !none.p50 && !none.mean);
    EXPECT_EQ(*monthly.p50, 2);
    for (const ExposureReference &r : BuiltInReferences())
        EXPECT_EQ(Judge(none, r).verdict, Verdict::NotConclusive) << r.id.toStdString();
}

TEST(Exposure, Verdicts) {
    using V = Verdict;
    const struct {
        std::vector<std::pair<std::optional<double>, bool>> medians;  // with complete
        double max;
        V daily, maxBasis;
        int period;
    } cases[] = {
        {{{2.9, true}, {3, true}}, 100, V::Met, V::Met, 1},
        {{{2, true}, {5, false}}, 100.01, V::NotConclusive, V::Exceeded, 1},
        {{{3.5, true}, {{}, false}, {4, false}}, 5, V::Exceeded, V::Met, 0},
        {{{2, true}, {1, false}}, 5, V::NotConclusive, V::Met, 0},
    };
    for (const auto &c : cases) {
        ExposureFigures f;
        f.maximum = c.max;
        for (const auto &[median, complete] : c.medians) {
            f.periods.push_back({0, median, 1, 1, 1, complete, false});
            if (median && (!f.highestMedian || *median > *f.highestMedian))
                f.highestMedian = median, f.highestMedianPeriod = int32_t(f.periods.size() - 1);
        }
        const ReferenceVerdict daily = Judge(f, CustomReference(QStringLiteral("mine"), 3, ExposureBasis::DailyMedian));
        EXPECT_EQ(std::tie(daily.verdict, daily.period), std::tie(c.daily, c.period)) << c.max;
        EXPECT_EQ(Judge(f, *FindReference(u"it-limit")).verdict, c.maxBasis) << c.max;
    }
    EXPECT_EQ(FindReference(u"icnirp-workers")->value, 1000);
    EXPECT_FALSE(FindReference(u"custom"));
}

TEST(Exposure, AgreesWithAPlainComputation) {
    std::mt19937 rng(7);
    const std::pair<const char *, int> steps[] = {{"s", 97}, {"n", 13}, {"h", 2}};
    for (const auto &[unit, step] : steps) {
        std::vector<double> v(4000);
        for (double &x : v) x = rng() % 30 == 0 ? -1.0 : double(rng() % 500 + 1) / 100;
        const MeasurementData d = Set(v, unit, step, DateFromParts(2026, 3, 28, 14, 37, 20));
        const float threshold = 2.5f;
        const ExposureFigures f = ComputeExposure(d, threshold);
        std::map<int64_t, std::vector<double>> days;
        std::vector<double> all, hours[24];
        int32_t run = 0, longest = 0;
        for (int32_t i = 1; i <= d.DataCount; ++i) {
            const double x = d.DataValue[size_t(i)], when = d.SampleDate(i);
            std::vector<double> &day = days[DateDiff(QStringLiteral("s"), d.DataStart, when) / 86400];
            if (x < 0) {
                run = 0;
                continue;
            }
            day.push_back(x);
            all.push_back(x);
            hours[DateToDateTime(when).time().hour()].push_back(x);
            run = float(x) > threshold ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        ASSERT_EQ(f.periods.size(), days.size());
        size_t k = 0;
        for (auto &[index, values] : days) {
            std::sort(values.begin(), values.end());
            const size_t h = values.size() / 2;
            EXPECT_EQ(f.periods[k++].median, values.size() % 2 ? values[h] : (values[h - 1] + values[h]) / 2);
        }
        std::sort(all.begin(), all.end());
        const auto pct = [&](int p) { return all[size_t(std::ceil(p * double(all.size()) / 100)) - 1]; };
        EXPECT_EQ(std::tie(*f.p50, *f.p90, *f.p95, *f.p99), std::make_tuple(pct(50), pct(90), pct(95), pct(99)));
        EXPECT_EQ(f.longestRunSeconds, longest * f.stepSeconds);
        for (size_t h = 0; h < 24; ++h) {
            double sum = 0;
            for (double x : hours[h]) sum += x;
            if (hours[h].empty()) EXPECT_FALSE(f.hourlyMean[h]);
            else EXPECT_NEAR(*f.hourlyMean[h], sum / double(hours[h].size()), 1e-9);
        }
    }
}
