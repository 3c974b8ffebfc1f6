#pragma once
// The figures of an exposure assessment of one measurement, and its verdicts against
// reference values: window-free, so that a report, a window and the command-line
// companion give the same figures.
//
// A sample has data when its value is above 0 (a mark of -1 or a 0 has none), as the
// statistics count it; "above the threshold" is the warnings' test, float(value) > threshold.
#include <QString>
#include <QStringView>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace fm {
struct MeasurementData;

// One 24-hour period: the first from the measurement's start, then each next 24 hours.
// A sample belongs to the period its date falls in. Periods that hold no sample at all
// (only with a step longer than 24 hours) are left out.
struct DailyPeriod {
    double start = 0;              // OLE date
    std::optional<double> median;  // of the samples with data; none without any
    int32_t samples = 0;           // in the period, with data or not
    int32_t valid = 0;             // with data
    double coverage = 0;           // valid / samples
    bool complete = false;         // coverage of at least 90 %
    // The last period, when the measurement ends before its 24 hours do: it holds fewer
    // samples than a full period would at the step. Its coverage counts only the samples
    // the measurement spans in it.
    bool partial = false;
};

struct ExposureFigures {
    int32_t samples = 0;
    int32_t valid = 0;
    // 0 when the step has no fixed length ("m", "q", "yyyy", or not above 0): then there
    // are no periods, no hourly means and no times.
    double stepSeconds = 0;
    std::vector<DailyPeriod> periods;
    std::optional<double> highestMedian;  // over every period that has a median
    int32_t highestMedianPeriod = -1;
    // Over the samples with data: Pk is the value at rank ceil(k/100 * valid), from 1, in
    // ascending order.
    std::optional<double> p50, p90, p95, p99, maximum;
    std::optional<double> mean;  // each sample with data stands for one step
    float threshold = 0;
    int32_t aboveSamples = 0;
    double aboveSeconds = 0;
    double abovePercent = 0;  // of the samples with data; 0 without any
    // The longest run of consecutive samples above the threshold (the first, of equal
    // ones); a sample without data breaks a run. The start is its first sample's OLE date.
    double longestRunSeconds = 0;
    std::optional<double> longestRunStart;
    // Slot h: the mean of the samples with data whose time of day lies in hour h.
    std::array<std::optional<double>, 24> hourlyMean;
};

// The figures of `d` against `threshold` (µT). A fault is reported and gives empty figures.
ExposureFigures ComputeExposure(const MeasurementData &d, float threshold);

enum class ExposureBasis { DailyMedian, Maximum };
enum class Verdict { Met, Exceeded, NotConclusive };

struct ExposureReference {
    QString id;        // for the command line, e.g. "it-quality"
    QString name;      // English
    double value = 0;  // µT
    ExposureBasis basis = ExposureBasis::Maximum;
};

// it-quality, it-attention, it-limit, eu-1999, icnirp-public, icnirp-workers, in that order.
std::span<const ExposureReference> BuiltInReferences();
// A built-in reference by its id; nullptr for any other.
const ExposureReference *FindReference(QStringView id);
// A value of the user's own: id "custom".
ExposureReference CustomReference(const QString &name, double value, ExposureBasis basis);

struct ReferenceVerdict {
    Verdict verdict = Verdict::NotConclusive;
    // What the value was held against: the maximum; or the highest median of the complete
    // periods when that exceeds it, else the highest median of all periods.
    std::optional<double> figure;
    int32_t period = -1;  // the period of that median; -1 for the maximum
};

// Basis DailyMedian: exceeded when any complete period's median is above the value;
// met when every period is complete (the last, partial one too) and none is above it;
// otherwise, and without periods, not conclusive.
// Basis Maximum: exceeded when the maximum is above the value, met when it is not, not
// conclusive without samples with data.
ReferenceVerdict Judge(const ExposureFigures &figures, const ExposureReference &reference);

// What the user chose for an assessment: the references judged, in the order shown, and
// the texts of the report.
struct ExposureChoice {
    QString site;
    QString notes;
    std::vector<ExposureReference> references;
};

// The words of the JSON texts: "median24h", "maximum"; "met", "exceeded", "not conclusive".
QString BasisId(ExposureBasis basis);
QString VerdictId(Verdict verdict);

}  // namespace fm
