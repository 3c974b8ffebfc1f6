#include "analysis/exposure.h"
#include "analysis/warnings.h"
#include "commands.h"
#include "core/data_set.h"
#include "core/file_access.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "files/table_export.h"
#include "shell/info_model.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <utility>

namespace fm::cli {
namespace {
void Print(const QString &text) {
    std::fputs(qPrintable(text + QLatin1Char('\n')), stdout);
}

void PrintPanel() {
    const InfoTexts t = BuildInfo();
    const auto row = [](int caption, const QString &value) {
        Print(ResString(caption) + QStringLiteral(": ") + value);
    };
    row(4030, t.source);
    row(4031, t.count);
    row(4032, t.step);
    row(4033, t.start);
    row(4034, t.stop);
    row(3044, t.values[0]);
    row(3045, t.values[1]);
    row(3046, t.values[2]);
    row(3051, t.values[3]);
    row(4025, t.shortId.trimmed());
    row(4026, t.longId.trimmed());
    row(4035, t.commText);
    row(4036, t.monitorText);
    Print(QString());
    Print(ResString(4089));
    for (const WarningLine &w : Warnings())
        Print((w.level >= 3 ? QStringLiteral("[!] ") : QStringLiteral("[i] ")) + w.text);
}

QJsonValue Figure(const std::optional<double> &v) {
    return v ? QJsonValue(*v) : QJsonValue(QJsonValue::Null);
}

// The figures of the assessment, judged against every built-in reference.
QJsonObject ExposureJson() {
    const ExposureFigures f = ComputeExposure(Data(), Options().Soglia);
    QJsonArray periods;
    for (const DailyPeriod &p : f.periods)
        periods.append(QJsonObject{{"start", IsoDate(p.start)},
                                   {"median", Figure(p.median)},
                                   {"valid", p.valid},
                                   {"coverage", p.coverage},
                                   {"complete", p.complete},
                                   {"partial", p.partial}});
    QJsonArray hourly;
    for (const auto &h : f.hourlyMean) hourly.append(Figure(h));
    QJsonArray references;
    for (const ExposureReference &r : BuiltInReferences())
        references.append(QJsonObject{{"name", r.name},
                                      {"id", r.id},
                                      {"value", r.value},
                                      {"basis", BasisId(r.basis)},
                                      {"verdict", VerdictId(Judge(f, r).verdict)}});
    return QJsonObject{
        {"Median24h", periods},
        {"Median24hMax", Figure(f.highestMedian)},
        {"P50", Figure(f.p50)},
        {"P90", Figure(f.p90)},
        {"P95", Figure(f.p95)},
        {"P99", Figure(f.p99)},
        {"Maximum", Figure(f.maximum)},
        {"TimeWeightedMean", Figure(f.mean)},
        {"Threshold", Widen(f.threshold)},
        {"SecondsAboveThreshold", f.aboveSeconds},
        {"ShareAboveThreshold", f.abovePercent / 100},
        {"LongestAboveSeconds", f.longestRunSeconds},
        {"HourlyMean", hourly},
        {"References", references},
    };
}

void PrintJson() {
    const MeasurementData &d = Data();
    QJsonArray warnings;
    for (const WarningLine &w : Warnings())
        warnings.append(QJsonObject{{"text", w.text}, {"level", w.level}});
    QJsonObject o{
        {"DataSource", d.DataSource},
        {"DataCount", d.DataCount},
        {"DataStep", d.DataStep},
        {"DataStepUnit", d.DataStepUnit},
        {"DataStart", IsoDate(d.DataStart)},
        {"DataStop", IsoDate(d.DataStop)},
        {"DataEnd", IsoDate(d.DataEnd)},
        {"DataStopCode", d.DataStopCode},
        {"ShortID", d.ShortID.trimmed()},
        {"LongID", d.LongID.trimmed()},
        {"DataMin", Widen(d.DataMin)},
        {"DataMax", Widen(d.DataMax)},
        {"DataMean", Widen(d.DataMean)},
        {"DataMedian", d.DataMedian},
        {"MedianPos", d.MedianPos},
        {"warnings", warnings},
        {"exposure", ExposureJson()},
    };
    if (d.DataIsCsv) {
        o.insert(QStringLiteral("DataIsCsv"), true);
        for (const auto &[name, value] : {std::pair{"RfMax", d.RfMax},
                                          {"RfMin", d.RfMin},
                                          {"RfMean", d.RfMean},
                                          {"AuxMax", d.AuxMax},
                                          {"AuxMin", d.AuxMin},
                                          {"AuxMean", d.AuxMean}})
            o.insert(QLatin1String(name), Widen(value));
    }
    std::fputs(QJsonDocument(o).toJson(QJsonDocument::Indented).constData(), stdout);
}
}  // namespace

QString IsoDate(double date) {
    return DateToDateTime(date).toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

int Info(const QString &file, bool json) {
    if (!LoadFile(file)) return kFailed;
    if (json)
        PrintJson();
    else
        PrintPanel();
    return kOk;
}

int Convert(const QString &in, const QString &out) {
    if (!LoadFile(in)) return kFailed;
    if (!SaveFile(out)) {
        std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
        return kFailed;
    }
    return kOk;
}
bool MayReplace(const QString &out) {
    if (!FileExists(out) || Host().MessBox(ResString(26), {}, 1, 0)) return true;
    std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
    return false;
}

int Export(const QString &in, bool csv, const QString &out) {
    if (!LoadFile(in)) return kFailed;
    if (!MayReplace(out)) return kFailed;
    if (!SaveTable(out, csv ? 1 : 2)) {
        std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
        return kFailed;
    }
    return kOk;
}
}  // namespace fm::cli
