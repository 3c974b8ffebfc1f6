#include "commands.h"
#include "core/data_set.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "shell/data_list.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

namespace fm::cli {
namespace {
void Write(QByteArray &bytes) {
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    bytes.resize(0);
}

// As QJsonDocument writes a number: the double's shortest text, null when not finite.
void AppendNumber(QByteArray &out, double value) {
    out += qIsFinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest)
                            : QByteArrayLiteral("null");
}

// The heading's figures with the keys of info --json, then the rows in the list's order,
// written as they come: a year of samples is ten million rows.
void PrintJson(const DataList &list) {
    const MeasurementData &d = Data();
    QJsonObject head{
        {"ShortID", d.ShortID.trimmed()}, {"LongID", d.LongID.trimmed()}, {"DataSource", d.DataSource}};
    head.insert(QStringLiteral("DataMedian"),
                DataList::ValueOrderAvailable() ? QJsonValue(d.DataMedian) : QJsonValue());
    if (d.DataIsCsv) {
        head.insert(QStringLiteral("DataIsCsv"), true);
        for (const auto &[name, value] :
             {std::pair{"AuxMin", d.AuxMin}, {"AuxMax", d.AuxMax}, {"AuxMean", d.AuxMean}})
            head.insert(QLatin1String(name), Widen(value));
    }
    QByteArray out = QJsonDocument(head).toJson(QJsonDocument::Compact);
    out.chop(1);  // the closing brace: the rows follow
    out += ",\"rows\":[";
    const char *separator = "\n";
    for (int64_t line = list.HeadingLines(); line < list.LineCount(); ++line) {
        const int32_t k = list.SampleOfLine(line);
        if (k < 1) continue;
        const double date = DateAdd(d.DataStepUnit, double(k - 1) * d.DataStep, d.DataStart);
        out += separator;
        separator = ",\n";
        out += "{\"date\":\"" + IsoDate(date).toLatin1() + '"';
        const float xyz[3] = {d.DataX[size_t(k)], d.DataY[size_t(k)], d.DataZ[size_t(k)]};
        const double value = d.DataValue[size_t(k)];
        // A sample the logger could not take (the list's "NOT AVAILABLE") has no figures.
        const bool available = xyz[0] >= 0 && xyz[1] >= 0 && xyz[2] >= 0 && value >= 0;
        for (int axis = 0; axis < 3; ++axis) {
            out += axis == 0 ? ",\"x\":" : axis == 1 ? ",\"y\":" : ",\"z\":";
            AppendNumber(out, available ? Widen(xyz[axis]) : qQNaN());
        }
        out += ",\"value\":";
        AppendNumber(out, available ? value : qQNaN());
        out += '}';
        if (out.size() >= (1 << 16)) Write(out);
    }
    out += "]}\n";
    Write(out);
}
}  // namespace

int List(const QString &in, bool byValue, bool json) {
    if (!LoadFile(in)) return kFailed;
    const DataList list(!byValue);
    if (json) {
        PrintJson(list);
        return kOk;
    }
    // Lines go out in blocks: a call per line costs seconds on a year of samples.
    QString text;
    for (int64_t i = 0; i < list.LineCount(); ++i) {
        list.AppendLine(i, text);
        text += QLatin1Char('\n');
        if (text.size() < (1 << 16) && i + 1 < list.LineCount()) continue;
        QByteArray bytes = text.toLocal8Bit();
        Write(bytes);
        text.resize(0);
    }
    return kOk;
}
}  // namespace fm::cli
