#include "analysis/exposure.h"

#include "core/data_set.h"
#include "core/fault.h"
#include "core/regional.h"

#include <algorithm>
#include <memory>

namespace fm {

namespace {
constexpr int64_t kHourMs = 3600 * 1000;
constexpr int64_t kDayMs = 24 * kHourMs;

// The step in milliseconds, as date arithmetic adds it (which takes "w" and "y" for days);
// 0 for a unit of no fixed length.
int64_t StepMs(const MeasurementData &d) {
    static const std::pair<const char *, int64_t> units[] = {
        {"s", 1000},   {"n", 60 * 1000}, {"h", kHourMs},    {"d", kDayMs},
        {"w", kDayMs}, {"y", kDayMs},    {"ww", 7 * kDayMs}};
    if (d.DataStep > 0)
        for (const auto &[letter, ms] : units)
            if (d.DataStepUnit.compare(QLatin1String(letter), Qt::CaseInsensitive) == 0)
                return ms * d.DataStep;
    return 0;
}

// The floats keep only what a value's own text says: widened back, 0.35f reads 0.35 again.
double Median(float *first, int32_t n) {
    float *mid = first + n / 2;
    std::nth_element(first, mid, first + n);
    if (n % 2) return Widen(*mid);
    return (Widen(*std::max_element(first, mid)) + Widen(*mid)) / 2;
}

// A period as the pass gathers it: its samples with data lie from `first` in the copy.
struct Gathering {
    int64_t day = 0;
    int64_t first = 0;
    int32_t samples = 0, valid = 0;
};
}  // namespace

ExposureFigures ComputeExposure(const MeasurementData &d, float threshold) {
    return Trap("ComputeExposure", ExposureFigures{}, [&] {
        ExposureFigures f;
        f.threshold = threshold;
        const int32_t n = d.DataCount;
        if (n < 1) return f;
        if (d.DataValue.size() < size_t(n) + 1) Raise(err::Subscript);
        f.samples = n;
        const int64_t stepMs = StepMs(d);
        const bool timed = stepMs > 0;
        f.stepSeconds = double(stepMs) / 1000;

        // One float per sample with data: the periods' medians and the percentiles
        // reorder it in place.
        const std::unique_ptr<float[]> copy(new float[size_t(n)]);
        float *vals = copy.get();
        int64_t m = 0;
        double sum = 0, maximum = 0;
        std::array<double, 24> hourSum{};
        std::array<int64_t, 24> hourCount{};
        int32_t run = 0, bestRun = 0, bestRunEnd = 0;
        std::vector<Gathering> gathered;
        Gathering g;
        int64_t timeOfDay = timed ? DateToDateTime(d.DataStart).time().msecsSinceStartOfDay() : 0;
        int64_t intoPeriod = 0;  // from the current period's start
        const int64_t dayStep = stepMs % kDayMs;
        const double *v = d.DataValue.data();
        for (int32_t i = 1; i <= n; ++i) {
            if (timed && i > 1) {
                timeOfDay += dayStep;
                if (timeOfDay >= kDayMs) timeOfDay -= kDayMs;
                intoPeriod += stepMs;
                if (intoPeriod >= kDayMs) {
                    gathered.push_back(g);
                    g = Gathering{g.day + intoPeriod / kDayMs, m, 0, 0};
                    intoPeriod %= kDayMs;
                }
            }
            ++g.samples;
            const double x = v[i];
            if (!(x > 0)) {
                run = 0;
                continue;
            }
            const float fx = float(x);
            vals[m++] = fx;
            ++g.valid;
            sum += x;
            maximum = std::max(maximum, x);
            if (timed) {
                const size_t h = size_t(timeOfDay / kHourMs);
                hourSum[h] += x;
                ++hourCount[h];
            }
            if (fx > threshold) {
                ++f.aboveSamples;
                if (++run > bestRun) {
                    bestRun = run;
                    bestRunEnd = i;
                }
            } else {
                run = 0;
            }
        }
        f.valid = int32_t(m);

        if (timed) {
            gathered.push_back(g);
            f.periods.reserve(gathered.size());
            for (const Gathering &p : gathered) {
                DailyPeriod out;
                out.start = DateAdd(QStringLiteral("h"), double(p.day * 24), d.DataStart);
                out.samples = p.samples;
                out.valid = p.valid;
                out.coverage = double(p.valid) / p.samples;
                out.complete = int64_t(p.valid) * 10 >= int64_t(p.samples) * 9;
                if (p.valid > 0) out.median = Median(vals + p.first, p.valid);
                if (out.median && (!f.highestMedian || *out.median > *f.highestMedian)) {
                    f.highestMedian = out.median;
                    f.highestMedianPeriod = int32_t(f.periods.size());
                }
                f.periods.push_back(out);
            }
            // The slot after the last sample still in the last period: it could hold more.
            f.periods.back().partial = intoPeriod + stepMs < kDayMs;
            for (size_t h = 0; h < 24; ++h)
                if (hourCount[h]) f.hourlyMean[h] = hourSum[h] / double(hourCount[h]);
            f.aboveSeconds = f.aboveSamples * f.stepSeconds;
            f.longestRunSeconds = bestRun * f.stepSeconds;
            if (bestRun > 0) f.longestRunStart = d.SampleDate(bestRunEnd - bestRun + 1);
        }
        if (m == 0) return f;

        f.mean = sum / double(m);
        f.maximum = maximum;
        f.abovePercent = double(f.aboveSamples) * 100 / double(m);
        // Ascending ranks, so each selection only searches above the one before; a rank
        // equal to the one before is already in place.
        int64_t done = 0;
        const auto rank = [&](int k) {
            const int64_t r = (int64_t(k) * m + 99) / 100;
            if (r > done) std::nth_element(vals + done, vals + r - 1, vals + m);
            done = r;
            return Widen(vals[r - 1]);
        };
        f.p50 = rank(50);
        f.p90 = rank(90);
        f.p95 = rank(95);
        f.p99 = rank(99);
        return f;
    });
}

std::span<const ExposureReference> BuiltInReferences() {
    using B = ExposureBasis;
    static const ExposureReference refs[] = {
        {QStringLiteral("it-quality"), QStringLiteral("Italian quality objective"), 3, B::DailyMedian},
        {QStringLiteral("it-attention"), QStringLiteral("Italian attention value"), 10, B::DailyMedian},
        {QStringLiteral("it-limit"), QStringLiteral("Italian exposure limit"), 100, B::Maximum},
        {QStringLiteral("eu-1999"), QStringLiteral("EU 1999/519/EC reference level at 50 Hz"), 100,
         B::Maximum},
        {QStringLiteral("icnirp-public"), QStringLiteral("ICNIRP 2010 general public"), 200, B::Maximum},
        {QStringLiteral("icnirp-workers"), QStringLiteral("ICNIRP 2010 workers"), 1000, B::Maximum},
    };
    return refs;
}

const ExposureReference *FindReference(QStringView id) {
    for (const ExposureReference &r : BuiltInReferences())
        if (r.id == id) return &r;
    return nullptr;
}

ExposureReference CustomReference(const QString &name, double value, ExposureBasis basis) {
    return {QStringLiteral("custom"), name, value, basis};
}

ReferenceVerdict Judge(const ExposureFigures &figures, const ExposureReference &reference) {
    ReferenceVerdict out;
    if (reference.basis == ExposureBasis::Maximum) {
        out.figure = figures.maximum;
        if (figures.maximum)
            out.verdict = *figures.maximum > reference.value ? Verdict::Exceeded : Verdict::Met;
        return out;
    }
    out.figure = figures.highestMedian;
    out.period = figures.highestMedianPeriod;
    const std::vector<DailyPeriod> &p = figures.periods;
    bool allComplete = !p.empty();
    int32_t worst = -1;  // the complete period of the highest median
    for (size_t k = 0; k < p.size(); ++k) {
        if (!p[k].complete)
            allComplete = false;
        else if (worst < 0 || *p[k].median > *p[size_t(worst)].median)
            worst = int32_t(k);
    }
    if (worst >= 0 && *p[size_t(worst)].median > reference.value) {
        out.verdict = Verdict::Exceeded;
        out.figure = p[size_t(worst)].median;
        out.period = worst;
    } else if (allComplete) {
        out.verdict = Verdict::Met;
    }
    return out;
}

QString BasisId(ExposureBasis basis) {
    return basis == ExposureBasis::DailyMedian ? QStringLiteral("median24h") : QStringLiteral("maximum");
}

QString VerdictId(Verdict verdict) {
    if (verdict == Verdict::Met) return QStringLiteral("met");
    return verdict == Verdict::Exceeded ? QStringLiteral("exceeded") : QStringLiteral("not conclusive");
}

}  // namespace fm
