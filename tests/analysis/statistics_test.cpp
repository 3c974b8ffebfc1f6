// Maximum, minimum, mean, the median's sort, and the running figures of live samples.
#include "analysis/statistics.h"
#include "core/data_set.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

using namespace fm;

namespace {
// A data set of the values given, seeded for the sort as the loaders seed it.
void SetValues(const std::vector<double> &values) {
    MeasurementData &d = Data();
    const size_t n = values.size();
    d.DataCount = int32_t(n);
    d.DataValue.assign(n + 1, 0.0);
    d.SortedValue.assign(n + 1, 0.0);
    d.SortedIndex.assign(n + 1, 0);
    for (size_t i = 1; i <= n; ++i) {
        d.DataValue[i] = values[i - 1];
        if (values[i - 1] == -1) continue;  // a mark is not seeded
        d.SortedValue[i] = values[i - 1];
        d.SortedIndex[i] = int32_t(i);
    }
}
}  // namespace

TEST(Statistics, ExtremesAndMeanOfTheDataSet) {
    test::Fresh fresh;
    SetValues({7});
    CalculateStats(QStringLiteral("Data"));
    CalculateMediana();
    EXPECT_FLOAT_EQ(Data().DataMax, 7);
    EXPECT_FLOAT_EQ(Data().DataMin, 7);
    EXPECT_FLOAT_EQ(Data().DataMean, 7);
    EXPECT_EQ(Data().DataMedian, 7);
    EXPECT_EQ(Data().MedianPos, 1);

    SetValues({0, 3, 5});  // the seed is not tested: a first 0 stays the minimum
    CalculateStats(QStringLiteral("Data"));
    EXPECT_FLOAT_EQ(Data().DataMin, 0);
    SetValues({-1, 3, 5});
    CalculateStats(QStringLiteral("Data"));
    EXPECT_FLOAT_EQ(Data().DataMin, -1);
    SetValues({4, 0, 2});  // a later 0 is not the minimum, but counts in the mean
    CalculateStats(QStringLiteral("Data"));
    EXPECT_FLOAT_EQ(Data().DataMin, 2);
    EXPECT_FLOAT_EQ(Data().DataMean, 2);
    SetValues({10, -1});  // marks lower the mean
    CalculateStats(QStringLiteral("Data"));
    EXPECT_FLOAT_EQ(Data().DataMean, 4.5f);
    EXPECT_FLOAT_EQ(Data().DataMax, 10);
}

TEST(Statistics, Median) {
    test::Fresh fresh;
    SetValues({3, 5});
    CalculateMediana();
    EXPECT_EQ(Data().DataMedian, 4);
    EXPECT_EQ(Data().MedianPos, 1);
    SetValues({9, 1, 7, 3, 5});
    CalculateMediana();
    EXPECT_EQ(Data().DataMedian, 5);
    EXPECT_EQ(Data().MedianPos, 3);
    // A mark counts in the median as 0 (the order itself: the reference sort below).
    SetValues({2, -1, 4});
    CalculateMediana();
    EXPECT_EQ(Data().DataMedian, 2);
}

TEST(Statistics, LiveSamplesRunTheirOwnFigures) {
    test::Fresh fresh;
    Data().DataMax = 7;
    std::vector<double> values{0, 2.0};
    float mx = -9, mn = -9, mean = -9;
    const auto series = [&] {
        return RunningSeries{values.data(), values.size(), int32_t(values.size() - 1), &mx, &mn, &mean};
    };
    CalculateStats(QStringLiteral("RT"), series());
    EXPECT_FLOAT_EQ(mx, 2);
    EXPECT_FLOAT_EQ(mean, 2);
    values.push_back(0.0);
    CalculateStats(QString(), series());  // any other text is the live branch
    EXPECT_FLOAT_EQ(mn, 0);               // a live 0 does become the minimum
    EXPECT_FLOAT_EQ(mean, 1);
    values.push_back(4.0);
    CalculateStats(QStringLiteral("RT"), series());
    EXPECT_FLOAT_EQ(mx, 4);
    EXPECT_FLOAT_EQ(mean, 2);
    EXPECT_EQ(Data().DataMax, 7);  // the data set is left alone
}

// A running series without its sample, and an empty data set: reported, not read.
TEST(Statistics, WhatCannotBeReadIsReported) {
    test::Fresh fresh;
    test::RecorderHost host;
    std::vector<double> values{0, 2.0};
    float mx = 0, mn = 0, mean = 0;
    CalculateStats(QStringLiteral("RT"), {values.data(), values.size(), 2, &mx, &mn, &mean});
    CalculateStats(QStringLiteral("RT"));
    EXPECT_EQ(mx, 0);
    Data().DataCount = 0;
    CalculateStats(QStringLiteral("Data"));
    CalculateMediana();
    ASSERT_EQ(host.boxes.size(), 4u);
    for (size_t i = 0; i < 3; ++i) EXPECT_TRUE(host.boxes[i].text.contains(QStringLiteral("CalculateStats")));
    EXPECT_TRUE(host.boxes[3].text.contains(QStringLiteral("CalculateMediana")));
}

TEST(Statistics, HistogramClassesAndLabels) {
    test::Fresh fresh;
    test::ScopedLocale us(QStringLiteral("en_US"));
    SetValues({0.5, 10, 9.99, 0, -1, 3});
    DoStatistics(0, 10, 11);
    const Histogram &h = Statistics();
    ASSERT_EQ(h.StatClasses, 11);
    EXPECT_EQ(h.StatLabel[1], QStringLiteral("0.0-1.0"));
    EXPECT_EQ(h.StatLabel[10], QStringLiteral("9.0-10.0"));
    EXPECT_EQ(h.StatLabel[11], QStringLiteral(">10.0"));
    EXPECT_DOUBLE_EQ(h.StatPercent[11], 100.0 / 6);  // exactly 10 falls in the last class
    EXPECT_DOUBLE_EQ(h.StatPercent[1], 100.0 / 6);
    double sum = 0;
    for (int i = 1; i <= 11; ++i) sum += h.StatPercent[size_t(i)];
    EXPECT_NEAR(sum, 400.0 / 6, 1e-9);  // zeros and marks count in n but in no class

    DoStatistics(2, 4, 3);
    EXPECT_EQ(h.StatLabel[1], QStringLiteral("<2.0"));
    EXPECT_EQ(h.StatLabel[2], QStringLiteral("2.0-4.0"));
    EXPECT_EQ(h.StatLabel[3], QStringLiteral(">4.0"));
    EXPECT_DOUBLE_EQ(h.StatPercent[1], 100.0 / 6);  // 0.5 lies below the scale
    DoStatistics(0, 0.5f, 6);
    EXPECT_EQ(h.StatLabel[1], QStringLiteral("0.00-0.10"));
    // Limits that are no range leave the last run as it was.
    DoStatistics(3, 3, 5);
    EXPECT_EQ(h.StatClasses, 6);
    EXPECT_EQ(h.StatLabel[1], QStringLiteral("0.00-0.10"));
    // More samples than 16 bits count.
    SetValues(std::vector<double>(70000, 1.5));
    DoStatistics(0, 10, 11);
    EXPECT_DOUBLE_EQ(Statistics().StatPercent[2], 100.0);
}

// The order of equal values is the one the plain shell sort on the values gives, for
// values of two decimals (sorted packed) and for any others: a reference sort decides.
TEST(Statistics, EqualValuesKeepTheShellSortsOrder) {
    test::Fresh fresh;
    const auto reference = [](std::vector<double> val, std::vector<int32_t> idx) {
        const int64_t n = int64_t(val.size()) - 1;
        int64_t h = 0;
        do h = 3 * h + 1;
        while (h <= n + 1);
        do {
            h /= 3;
            for (int64_t i = h; i <= n; ++i) {
                const double v = val[size_t(i)];
                const int32_t k = idx[size_t(i)];
                int64_t j = i;
                for (; j >= h && val[size_t(j - h)] > v; j -= h) {
                    val[size_t(j)] = val[size_t(j - h)];
                    idx[size_t(j)] = idx[size_t(j - h)];
                }
                val[size_t(j)] = v;
                idx[size_t(j)] = k;
            }
        } while (h > 1);
        return std::pair(val, idx);
    };
    uint32_t seed = 540;
    const auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 8; };
    for (const bool twoDecimals : {true, false}) {
        std::vector<double> values;
        for (int i = 0; i < 30000; ++i) {
            // Few distinct values, so most are equal to many others; marks and negatives among them.
            const double v = double(next() % 300) / 100 - 0.5;
            values.push_back(i % 997 == 3 ? -1 : twoDecimals ? v : v + 1.0 / 3);
        }
        SetValues(values);
        const auto [val, idx] = reference(Data().SortedValue, Data().SortedIndex);
        CalculateMediana();
        EXPECT_EQ(Data().SortedIndex, idx);
        EXPECT_EQ(Data().SortedValue, val);
    }
}
