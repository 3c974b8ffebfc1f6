#include "analysis/statistics.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/regional.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace fm {

void CalculateStats(const QString &source, const RunningSeries &series) {
    TrapVoid("CalculateStats", [&] {
        if (source == QLatin1String("Data")) {
            MeasurementData &d = Data();
            const int32_t n = d.DataCount;
            if (n < 1 || d.DataValue.size() < size_t(n) + 1) Raise(err::Subscript);
            const double *v = d.DataValue.data();
            // The extremes are single precision: compare and store the value rounded so.
            float mx = float(v[1]), mn = float(v[1]);
            double sum = v[1];
            for (int32_t i = 2; i <= n; ++i) {
                const float f = float(v[i]);
                if (f > mx) mx = f;
                if (f < mn && v[i] > 0) mn = f;
                sum += v[i];
            }
            d.DataMax = mx;
            d.DataMin = mn;
            d.DataMean = float(sum / n);
            return;
        }
        const RunningSeries &rs = series;
        if (rs.count < 1 || !rs.values || rs.size < size_t(rs.count) + 1) Raise(err::Subscript);
        if (!rs.max || !rs.min || !rs.mean) Raise(err::Subscript);
        const double v = rs.values[size_t(rs.count)];
        float &mx = *rs.max, &mn = *rs.min, &mean = *rs.mean;
        if (rs.count == 1) {
            mx = mn = mean = float(v);
            return;
        }
        if (float(v) > mx) mx = float(v);
        if (float(v) < mn) mn = float(v);
        // No running sum: the mean is carried through its single-precision field.
        mean = float((double(mean) * (rs.count - 1) + v) / rs.count);
    });
}

namespace {
// Shell sort over slots 0..n with the gaps 1, 4, 13, 40 ...; equal keys keep their order
// within one pass, which fixes the order of the value-ordered list. Slots are read and
// written through `load` and `store`, so the items may be packed in storage of another type.
template <class Item, class Load, class Store, class Greater>
void ShellSort(int64_t n, Load load, Store store, Greater greater) {
    const int64_t slotCount = n + 1;
    int64_t h = 0;
    do h = 3 * h + 1;
    while (h <= slotCount);
    do {
        h /= 3;
        for (int64_t i = h; i <= n; ++i) {
            const Item v = load(i);
            int64_t j = i;
            for (Item prev; j >= h && greater(prev = load(j - h), v); j -= h) store(j, prev);
            store(j, v);
        }
    } while (h > 1);
}

// Values of two decimals, as the loader rounds them, sort by their hundredths: a value
// and its index then fit in the 8 bytes the value took, and the sort moves half the
// memory. The hundredths order the values as the values themselves do, so the moves,
// and with them the order of equal values, are the same.
bool SortByHundredths(double *val, int32_t *idx, int64_t n) {
    for (int64_t i = 0; i <= n; ++i) {
        const double k = std::nearbyint(val[i] * 100);
        if (!(std::fabs(k) < 2e9) || k / 100 != val[i] || std::signbit(val[i])) return false;
    }
    const auto load = [val](int64_t i) {
        uint64_t item;
        std::memcpy(&item, &val[i], sizeof item);
        return item;
    };
    const auto store = [val](int64_t i, uint64_t item) { std::memcpy(&val[i], &item, sizeof item); };
    for (int64_t i = 0; i <= n; ++i) {
        const uint64_t key = uint32_t(int32_t(std::nearbyint(val[i] * 100))) ^ 0x80000000u;
        store(i, key << 32 | uint32_t(idx[i]));
    }
    ShellSort<uint64_t>(n, load, store, [](uint64_t a, uint64_t b) { return (a >> 32) > (b >> 32); });
    for (int64_t i = 0; i <= n; ++i) {
        const uint64_t item = load(i);
        idx[i] = int32_t(uint32_t(item));
        val[i] = double(int32_t(uint32_t(item >> 32) ^ 0x80000000u)) / 100;
    }
    return true;
}

struct Slot {
    double value;
    int32_t index;
};
}  // namespace

void CalculateMediana() {
    TrapVoid("CalculateMediana", [] {
        MeasurementData &d = Data();
        const int32_t n = d.DataCount;
        if (n < 1 || d.SortedValue.size() < size_t(n) + 1 || d.SortedIndex.size() < size_t(n) + 1)
            Raise(err::Subscript);
        double *val = d.SortedValue.data();
        int32_t *idx = d.SortedIndex.data();
        if (!SortByHundredths(val, idx, n)) {
            ShellSort<Slot>(
                n,
                [&](int64_t i) {
                    return Slot{val[i], idx[i]};
                },
                [&](int64_t i, const Slot &s) {
                    val[i] = s.value;
                    idx[i] = s.index;
                },
                [](const Slot &a, const Slot &b) { return a.value > b.value; });
        }
        const int32_t half = n / 2;
        auto at = [&](int32_t pos) { return d.DataValue[size_t(idx[pos])]; };
        if (n % 2) {
            d.MedianPos = half + 1;
            d.DataMedian = at(half + 1);
        } else {
            d.MedianPos = half;
            d.DataMedian = (at(half) + at(half + 1)) / 2;
        }
    });
}

Histogram &Statistics() {
    static Histogram h;
    return h;
}

void DoStatistics(float minValue, float maxValue, float classesIn) {
    TrapVoid("DoStatistics", [&] {
        const int c = int(classesIn);
        const MeasurementData &d = Data();
        if (c > 11 || !(maxValue > minValue) || d.DataCount == 0) return;
        Histogram &h = Statistics();
        h.StatClasses = 0;
        h.StatPercent.fill(0);
        for (QString &l : h.StatLabel) l.clear();
        const int low = minValue > 0 ? 1 : 0;
        const float width = (maxValue - minValue) / float(c - low - 1);
        const char16_t *fmt = width <= 0.1f ? u"#0.00" : u"#0.0";
        if (low) h.StatLabel[1] = QLatin1Char('<') + FormatNumber(minValue, fmt);
        for (int i = low + 1; i <= c - 1; ++i) {
            const double lower = double(i - low - 1) * width + minValue;
            const double upper = double(i - low) * width + minValue;
            h.StatLabel[size_t(i)] = FormatNumber(lower, fmt) + QLatin1Char('-') + FormatNumber(upper, fmt);
        }
        h.StatLabel[size_t(c)] = QLatin1Char('>') + FormatNumber(maxValue, fmt);
        for (int32_t i = 1; i <= d.DataCount; ++i) {
            const double v = d.DataValue[size_t(i)];
            if (!(v > 0)) continue;  // zeros and marks are counted nowhere
            const double k = std::floor((v - minValue) / width);
            const int cls = k < 0 ? 1 : int(std::min<double>(k + 1 + low, c));
            h.StatPercent[size_t(cls)] += 1;
        }
        h.StatClasses = int16_t(c);
        for (int i = 1; i <= c; ++i) h.StatPercent[size_t(i)] = h.StatPercent[size_t(i)] / d.DataCount * 100;
    });
}

} // namespace fm
