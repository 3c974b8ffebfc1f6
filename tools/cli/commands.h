#pragma once
// The commands of fluxmere-cli. Each returns the process's exit status.
#include <QStringList>
#include <optional>

namespace fm::cli {
inline constexpr int kOk = 0, kFailed = 1, kNoLanguage = 2, kUsage = 64;

// "2026-10-14T08:00:00", as the JSON texts write dates.
QString IsoDate(double date);
int Info(const QString &file, bool json);
// Asks, as saving a log does, before an existing file is replaced; false (and a message)
// when the answer is no, which it is unless --yes was given.
bool MayReplace(const QString &out);
int Convert(const QString &in, const QString &out);
int Export(const QString &in, bool csv, const QString &out);
int List(const QString &in, bool byValue, bool json);
// Limits of the statistics chart; what is not given keeps the window's own.
struct ChartLimits {
    std::optional<double> min, max;
    int classes = 0;
};
int Chart(const QString &in, const QString &kind, const ChartLimits &limits, const QString &out);
// The printed pages of a chart ("time", "stats", "rf") or of the data list ("list"), as a PDF.
int Print(const QString &in, const QString &kind, bool landscape, const QString &out);
// The exposure report as an A4 PDF; `references` as the command line gives them (all the
// built-in ones when empty).
int Report(const QString &in, const QString &out, const QString &site, const QString &notes,
           const QStringList &references);
int Status(const QString &port, bool json);
int ReadCodes(const QString &port, bool json);
int WriteCodes(const QString &port, const QString &shortId, const QString &longId);
int Program(const QString &port, const QString &step, const QString &unit, const QString &start,
            const QString &stop, const QString &clock);
int Stop(const QString &port);
int Upload(const QString &port, const QString &out);
// A Surveyor unit's stored data into a log file.
int ImportSurveyor(const QString &port, const QString &out);
// Live mode for `count` samples; the real-time log in its usual place unless `out` names one.
int LiveRun(const QString &port, int count, const QString &out);
// Writes the count of a real-time log left open by a crash; its half-written last line goes.
int Recover(const QString &file);
}  // namespace fm::cli
