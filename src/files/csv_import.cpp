// "File Centralina" files: records of seven comma-separated fields, one a line, no
// heading. The line feed is read as one more field separator, so the text is a single
// list of fields taken seven at a time.
#include "analysis/statistics.h"
#include "analysis/warnings.h"
#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "files/log_file.h"

#include <QElapsedTimer>
#include <QFile>
#include <cstring>
#include <limits>

namespace fm {
namespace {
constexpr int kFields = 7;
constexpr float kNoAux = -100.0f;  // the fifth column's "no value"
constexpr int kCarriageReturns = 4230;
constexpr int kNoRecord = 4231;

// The block of the wait window moves at every 1000 characters, but no more often than
// the eye follows: a repaint for each would cost more than the reading.
class Progress {
public:
    void At(qint64 position) {
        while (position >= next_) {
            next_ += 1000;
            if (!clock_.isValid() || clock_.elapsed() >= 50) {
                clock_.start();
                Host().WaitAnimate(10);
            }
        }
    }

private:
    qint64 next_ = 1000;
    QElapsedTimer clock_;
};

[[noreturn]] void NotReadable(int32_t record, int field, const char *begin, const char *end) {
    const QString text = FromCp1252(begin, qMin<qsizetype>(end - begin, 40));
    Raise(err::TypeMismatch, QStringLiteral("%1: record %2, field %3: \"%4\"")
                                 .arg(FaultDescription(err::TypeMismatch))
                                 .arg(record)
                                 .arg(field)
                                 .arg(text));
}

float Number(int32_t record, int field, const char *begin, const char *end) {
    float v = 0;
    if (!ParseFileNumber(begin, end, &v)) NotReadable(record, field, begin, end);
    return v;
}

// The length of the first record, its seven fields closed; 0 when the text has none.
qint64 FirstRecordLength(const char *begin, const char *end) {
    int closed = 0;
    for (const char *p = begin; p < end; ++p)
        if ((*p == ',' || *p == '\n') && ++closed == kFields) return p - begin + 1;
    return 0;
}

void SizeSlots(MeasurementData &d, size_t room) {
    d.DataX.resize(room);
    d.DataY.resize(room);
    d.DataZ.resize(room);
    d.DataRf.resize(room);
    d.DataValue.resize(room);
}

void Trim(MeasurementData &d, size_t room) {
    SizeSlots(d, room);
    if (d.DataX.capacity() > room + room / 8) {
        for (auto *v : {&d.DataX, &d.DataY, &d.DataZ, &d.DataRf}) v->shrink_to_fit();
        d.DataValue.shrink_to_fit();
    }
}

// Running maximum, minimum and mean of a column, the mean carried in its 32-bit field.
void Fold(float v, int32_t c, float &mx, float &mn, float &mean) {
    if (c == 1) {
        mx = mn = mean = v;
        return;
    }
    mean = float((double(mean) * (c - 1) + v) / c);
    if (v > mx) mx = v;
    if (v < mn) mn = v;
}

// Reads the file into the data set. A file that cannot be such a file is refused before
// the data set is touched: `refusal` then names the message, and the result is false.
bool Read(const QString &fileName, int *refusal) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) Raise(err::PermissionDenied, file.errorString());
    const qint64 size = file.size();
    QByteArray copy;
    const char *text = "";
    if (size > 0) {
        if (const uchar *mapped = file.map(0, size)) {
            text = reinterpret_cast<const char *>(mapped);
        } else {
            copy = file.readAll();
            if (copy.size() != size) Raise(err::DeviceIO, file.errorString());
            text = copy.constData();
        }
    }
    const char *const end = text + size;
    // Line ends of another platform would end up inside the fields.
    if (size > 0 && std::memchr(text, '\r', size_t(size))) {
        *refusal = kCarriageReturns;
        return false;
    }
    const qint64 first = FirstRecordLength(text, end);
    if (first == 0) {
        *refusal = kNoRecord;
        return false;
    }

    MeasurementData &d = Data();
    d.DataCount = 1;  // the record counter while reading
    d.DataStepUnit = QStringLiteral("s");
    d.DataStep = 5;
    d.DataSource = QStringLiteral("File Centralina");
    d.SetShortID(QString());
    d.SetLongID(QString());
    d.DataFile = fileName;
    // No order by value and no median for these files, nor date texts: nothing of the
    // measurement before may pass for theirs.
    d.SortedValue.clear();
    d.SortedIndex.clear();
    d.DataMedian = 0;
    d.MedianPos = 0;
    d.DataDateCount = 0;
    // Sized by what the first record suggests; grown when the records are shorter.
    size_t room = size_t(size / first) + 2;
    for (auto *v : {&d.DataX, &d.DataY, &d.DataZ, &d.DataRf}) v->assign(room, 0.0f);
    d.DataValue.assign(room, 0.0);

    float auxMax = 0, auxMin = 0, auxMean = 0;  // the fifth column, one value behind
    double start = 0;
    int32_t c = 1;
    int field = 1;
    Progress progress;
    const char *p = text;
    for (const char *q = text; q < end; ++q) {
        if (*q != ',' && *q != '\n') continue;
        progress.At(q - text);
        const size_t k = size_t(c);
        switch (field) {
            case 1:
                if (c == 1 && !ParseDate(FromCp1252(p, q - p).trimmed(), &start)) NotReadable(c, field, p, q);
                break;
            case 2:
                d.DataX[k] = Number(c, field, p, q);
                break;
            case 3:
                d.DataY[k] = Number(c, field, p, q);
                break;
            case 4:
                d.DataZ[k] = Number(c, field, p, q);
                break;
            case 5: {
                const float v = Number(c, field, p, q);
                if (v == kNoAux) break;
                if (c == 1) {
                    auxMax = auxMin = auxMean = v;
                } else {
                    auxMax = d.AuxMax;
                    auxMin = d.AuxMin;
                    auxMean = d.AuxMean;
                }
                Fold(v, c, d.AuxMax, d.AuxMin, d.AuxMean);
                break;
            }
            case 6: {
                const float v = Number(c, field, p, q);
                d.DataRf[k] = v;
                Fold(v, c, d.RfMax, d.RfMin, d.RfMean);
                break;
            }
            default:
                d.DataValue[k] = Widen(Number(c, field, p, q));
                break;
        }
        p = q + 1;
        if (++field > kFields) {
            field = 1;
            if (c == std::numeric_limits<int32_t>::max() - 1) Raise(err::Overflow);
            d.DataCount = ++c;
            if (size_t(c) >= room) {
                room += room / 2 + 16;
                SizeSlots(d, room);
            }
        }
    }
    // Record c has no closing comma: it is not counted. Values it has left stay
    // behind the count.
    d.DataCount = c - 1;
    Trim(d, field > 2 ? size_t(c) + 1 : size_t(c));
    // Worked out first: a start date that date arithmetic refuses fails the reading
    // before the data set is marked as loaded.
    const double dataEnd = DateAdd(d.DataStepUnit, double(d.DataStep) * d.DataCount, start);
    d.AuxMean = auxMean;
    d.AuxMax = auxMax;
    d.AuxMin = auxMin;
    d.DataStart = start;
    d.DataPresent = true;
    d.DataSaved = true;
    d.DataIsCsv = true;
    Host().SetPanelText(QString());
    d.DataEnd = dataEnd;
    CalculateStats(QStringLiteral("Data"));
    Host().UpdateInfo();
    GenerateWarnings();
    ShowWarningsIfWanted();
    EnableDataButtons();
    return true;
}
}  // namespace

bool OpenCsv(const QString &fileName) {
    Host().WaitShow();
    Host().WaitText(ResString(53));
    Host().DoEvents();
    int refusal = 0;
    const bool ok = Trap("OpenCsv", false, [&] { return Read(fileName, &refusal); });
    Host().WaitHide();
    Host().DoEvents();
    if (refusal) Host().MessBox(ResString(refusal), {}, -1, -1);
    return ok;
}
}  // namespace fm
