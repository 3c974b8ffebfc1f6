#include "files/log_file.h"

#include "analysis/statistics.h"
#include "analysis/warnings.h"
#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/file_access.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/safe_file.h"
#include "files/field_reader.h"
#include "files/log_recovery.h"
#include "files/sample_text.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

namespace fm {
namespace {
const char kTitle[] = "Field Activity Log";
const char kMark[] = "-1 -1 -1 0";

QString Text(const std::string &s) { return FromCp1252(s.data(), qsizetype(s.size())); }

double ValOf(const std::string &s) { return Val(s.data(), s.data() + s.size()); }

// A refused line in a message: its start only, so that a line of a hundred megabytes
// does not become a message of as many.
constexpr size_t kQuoted = 200;
QString Quoted(const std::string &s) {
    if (s.size() <= kQuoted) return Text(s);
    return Text(s.substr(0, kQuoted)) + QStringLiteral("...");
}

// A value a 32-bit float cannot hold is refused: it would be written as "inf" and read back as 0.
float Single(double v) {
    const float f = float(v);
    if (std::isinf(f)) Raise(err::Overflow);
    return f;
}

// Reads the next field or raises "Input past end of file".
void Read(FieldReader &in, std::string &field) {
    if (!in.Next(field)) Raise(err::InputPastEnd);
}

// The panel's progress text, sent only when it changes.
class Progress {
public:
    explicit Progress(int number) : prefix_(ResString(number)) {}
    void Show(int percent) {
        if (percent == last_) return;
        last_ = percent;
        Host().SetPanelText(prefix_ + QString::number(percent) + QLatin1Char('%'));
    }

private:
    QString prefix_;
    int last_ = -1;
};

// A plain decimal such as "0.35" or " -12.5", read as Val reads it: with at most 15
// digits, the digits as a whole number over a power of ten are two exact doubles, and
// their quotient is the correctly rounded value, as from_chars gives it.
bool PlainDecimal(const char *b, const char *e, double &out) {
    while (b < e && (*b == ' ' || *b == '\t')) ++b;
    const bool negative = b < e && *b == '-';
    if (negative) ++b;
    static const double kTens[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    uint64_t whole = 0;
    int digits = 0, decimals = 0;
    bool point = false;
    for (; b < e; ++b) {
        if (*b >= '0' && *b <= '9') {
            if (++digits > 15) return false;
            whole = whole * 10 + uint64_t(*b - '0');
            decimals += point;
        } else if (*b == '.' && !point) {
            point = true;
        } else {
            return false;
        }
    }
    if (digits == 0) return false;
    out = double(whole) / kTens[decimals];
    if (negative) out = -out;
    return true;
}

float SampleValue(const char *b, const char *e) {
    double v;
    return Single(PlainDecimal(b, e, v) ? v : Val(b, e));
}

// One sample line: three blank-separated values; a comma counts as a decimal point.
void ParseSample(std::string &line, float &x, float &y, float &z) {
    // The blanks are a few characters apart: a plain loop beats a library search here.
    const auto blank = [&line](size_t from) {
        for (size_t i = from; i < line.size(); ++i)
            if (line[i] == ' ') return i;
        return std::string::npos;
    };
    const size_t p1 = blank(0);
    const size_t p2 = p1 == std::string::npos ? p1 : blank(p1 + 1);
    const size_t p3 = p2 == std::string::npos ? p2 : blank(p2 + 1);
    if (p3 == std::string::npos)
        Raise(err::InvalidCall, QStringLiteral("Invalid sample line: ") + Quoted(line));
    for (size_t i = 0; i < p3; ++i)
        if (line[i] == ',') line[i] = '.';
    const char *b = line.data();
    x = SampleValue(b, b + p1);
    y = SampleValue(b + p1, b + p2);
    z = SampleValue(b + p2, b + p3);
}

// An unclosed real-time log would be refused for its blank count: its complete lines
// are offered back first.
void OfferRecovery(const QString &fileName) {
    const auto lines = UnclosedLogLines(fileName);
    if (!lines || *lines <= 0) return;
    const QString question = ResString(4401).arg(QFileInfo(fileName).fileName()).arg(*lines);
    if (Host().MessBox(question, {}, 1, 0)) RecoverLog(fileName);
}

bool Load(const QString &fileName) {
    MeasurementData &d = Data();
    switch (KindOf(fileName)) {
        case FileKind::Missing:
            Host().MessBox(ResString(21), {}, -1, -1);
            return false;
        // A pipe or a device would be waited on for ever, a folder read as nothing.
        case FileKind::Folder:
        case FileKind::Other:
            Host().MessBox(ResString(4345), {}, -1, -1);
            return false;
        case FileKind::Regular:
            break;
    }
    if (fileName.right(4) == QLatin1String(".csv")) return OpenCsv(fileName);
    QFile file;
    OpenForReading(file, fileName);  // a pipe or a device is refused before anything waits on it
    file.close();
    OfferRecovery(fileName);
    OpenForReading(file, fileName);
    FieldReader in(file);
    std::string field;
    if (!in.Next(field) || field != kTitle) {
        Host().MessBox(ResString(22), {}, -1, -1);
        return false;
    }
    Read(in, field);
    const QString dates = Text(field);
    double date = 0;
    if (const int at = int(dates.indexOf(QLatin1Char('@'))); at >= 0) {
        if (!ParseDate(dates.left(at), &date)) {
            Host().MessBox(ResString(25), {}, -1, -1);
            return false;
        }
        d.DataStart = date;
        const QString rest = dates.mid(at + 1);
        const int at2 = int(rest.indexOf(QLatin1Char('@')));
        if (!ParseDate(at2 >= 0 ? rest.left(at2) : rest, &date)) {
            Host().MessBox(ResString(25), {}, -1, -1);
            return false;
        }
        d.DataStop = date;
        d.DataStopCode = CInt(at2 >= 0 ? Val(rest.mid(at2 + 1)) : 0);
    } else {
        if (!ParseDate(dates, &date)) {
            Host().MessBox(ResString(25), {}, -1, -1);
            return false;
        }
        d.DataStart = date;
        d.DataStop = StopPlaceholder1();
        d.DataStopCode = -1;
    }
    Read(in, field);
    const QString stepText = Text(field).trimmed();
    // Checked as the whole number it becomes: a step or count of 0.3 is no step or count.
    const double step = Val(stepText);
    if (!(step > 0) || std::nearbyint(step) < 1) {
        Host().MessBox(ResString(24), {}, -1, -1);
        return false;
    }
    d.DataStep = CLng(step);
    d.DataStepUnit = stepText.right(1);
    Read(in, field);
    const double count = ValOf(field);
    if (!(count > 0) || std::nearbyint(count) < 1) {
        Host().MessBox(ResString(25), {}, -1, -1);
        return false;
    }
    const int32_t n = CLng(count);
    // The shortest sample is three blanks and a line end or comma: a count the rest
    // of the file cannot hold ends here, before the data set takes it or memory is
    // taken for it, so the samples in memory still agree with their count.
    if (in.Remaining() < qint64(n) * 4 - 1) Raise(err::InputPastEnd);
    d.DataCount = n;
    Read(in, field);
    d.SetShortID(Text(field).trimmed());
    Read(in, field);
    d.SetLongID(Text(field).trimmed());
    d.DataSource = QStringLiteral("File");
    d.DataFile = fileName;

    d.SizeArrays(n);
    d.DataDateCount = 0;
    Progress progress(3030);
    for (int32_t i = 1; i <= n; ++i) {
        Read(in, field);
        if (i == 1 && !IsDateInterval(d.DataStepUnit)) Raise(err::InvalidCall);
        const size_t k = size_t(i);
        if (field == kMark) {
            d.DataX[k] = d.DataY[k] = d.DataZ[k] = -1.0f;
            d.DataValue[k] = -1.0;
        } else {
            float x, y, z;
            ParseSample(field, x, y, z);
            d.DataX[k] = x;
            d.DataY[k] = y;
            d.DataZ[k] = z;
            const double v = RoundHalfEven(std::sqrt(double(x) * x + double(y) * y + double(z) * z), 2);
            d.DataValue[k] = v;
            d.SortedValue[k] = v;
            d.SortedIndex[k] = i;
        }
        d.DataDateCount = i;
        if (i % 10 == 0) progress.Show(int(int64_t(i) * 100 / n));
    }
    d.DataPresent = true;
    d.DataSaved = true;
    d.DataIsCsv = false;
    Host().SetPanelText(QString());
    d.DataEnd = DateAdd(d.DataStepUnit, double(n) * d.DataStep, d.DataStart);
    CalculateStats(QStringLiteral("Data"));
    CalculateMediana();
    Host().UpdateInfo();
    GenerateWarnings();
    ShowWarningsIfWanted();
    EnableDataButtons();
    return true;
}

QByteArray Line(const QString &text) { return '"' + ToCp1252(text) + "\"\r\n"; }

bool Save(const QString &fileName) {
    const MeasurementData &d = Data();
    SafeFile file(fileName);
    file.Open();
    QByteArray out;
    out += Line(QString::fromLatin1(kTitle));
    out += Line(GeneralDate(d.DataStart) + QLatin1Char('@') + GeneralDate(d.DataStop) + QLatin1Char('@') +
                QString::number(d.DataStopCode));
    out += Line(QString::number(d.DataStep) + d.DataStepUnit);
    out += Line(QString::number(d.DataCount));
    out += Line(d.ShortID.trimmed());
    out += Line(d.LongID.trimmed());
    const int32_t n = d.DataCount;
    if (d.DataX.size() < size_t(n) + 1 || d.DataY.size() < size_t(n) + 1 || d.DataZ.size() < size_t(n) + 1)
        Raise(err::Subscript);
    Progress progress(3031);
    SampleWriter writer;
    out.reserve(1 << 21);
    for (int32_t i = 1; i <= n; ++i) {
        if (i % 10 == 0) progress.Show(int(double(i) / n * 100));
        writer.Append(out, d.DataX[size_t(i)], d.DataY[size_t(i)], d.DataZ[size_t(i)]);
        file.Spill(out);
    }
    file.Write(out);
    file.Commit();
    return true;
}
} // namespace

bool LoadFile(const QString &fileName) {
    Host().SetBusy(true);
    const bool ok = Trap("LoadFile", false, [&] { return Load(fileName); });
    Host().SetBusy(false);
    return ok;
}

bool SaveFile(const QString &fileName) {
    if (FileExists(fileName) && !Host().MessBox(ResString(26), {}, 1, 0)) return false;
    if (!Trap("SaveFile", false, [&] { return Save(fileName); })) return false;
    Data().DataSaved = true;
    Data().DataFile = fileName;
    Host().SetPanelText(QString());
    return true;
}

} // namespace fm
