#include "acquisition/surveyor.h"

#include "analysis/statistics.h"
#include "analysis/warnings.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/options.h"
#include "core/regional.h"
#include "link/serial_port.h"

#include <QElapsedTimer>
#include <cmath>
#include <functional>
#include <limits>

namespace fm {
namespace {
constexpr int kCountWaitMs = 2000;
constexpr int kBlockWaitMs = 15000;
constexpr int kCountBytes = 6;
constexpr int kSliceMs = 20;  // the port is slept on in slices, with events let through between

void Say(const char *text) {
    Host().MessBox(QString::fromUtf8(text), {}, -1, -1);
}

// Sleeps on the port until `done` or the time is up; events run between slices, so
// windows repaint and timers fire during the transfer.
void WaitOnPort(const std::function<bool()> &done, int ms) {
    SerialPort &port = Seriale();
    QElapsedTimer waited;
    waited.start();
    while (!done() && waited.elapsed() <= ms) {
        port.WaitForInput(int(qMin<qint64>(kSliceMs, ms + 1 - waited.elapsed())));
        Host().DoEvents();
    }
}

// The count reply: the decimal digits up to the first other character.
int32_t BlockCount(const QByteArray &reply) {
    int64_t n = 0;
    for (const char c : reply) {
        if (c < '0' || c > '9') break;
        n = n * 10 + (c - '0');
        if (n > std::numeric_limits<int32_t>::max()) Raise(err::Overflow);
    }
    return int32_t(n);
}

// The block's start as the regional settings read "first/second/year h:m:s", or day 0.
double BlockDate(const uint8_t *b) {
    const QString text = QStringLiteral("%1/%2/%3 %4:%5:%6")
                             .arg(b[7])
                             .arg(b[8])
                             .arg(b[9] | b[10] << 8)
                             .arg(b[6])
                             .arg(b[5])
                             .arg(b[4]);
    double date = 0;
    if (ParseDate(text, &date)) return date;
    Say("Il formato della data è errato.");
    return 0;
}

// Slots from DataCount + 1 up to `count` take `fill`; slots past DataCount that an
// earlier, longer data set left behind are dropped first.
void GrowArrays(MeasurementData &d, int32_t count, float fill) {
    const size_t keep = size_t(d.DataCount) + 1, size = size_t(count) + 1;
    for (auto *a : {&d.DataX, &d.DataY, &d.DataZ}) {
        a->resize(std::min(a->size(), keep));
        a->resize(size, fill);
    }
    d.DataValue.resize(std::min(d.DataValue.size(), keep));
    d.DataValue.resize(size, double(fill));
}

// The data list and the panel read the value order and the median, as after an upload.
void SeedValueOrder(MeasurementData &d) {
    const size_t size = size_t(d.DataCount) + 1;
    d.SortedValue.assign(size, 0.0);
    d.SortedIndex.assign(size, 0);
    for (int32_t i = 1; i <= d.DataCount; ++i) {
        if (d.DataValue[size_t(i)] == -1) continue;
        d.SortedValue[size_t(i)] = d.DataValue[size_t(i)];
        d.SortedIndex[size_t(i)] = i;
    }
    d.DataDateCount = d.DataCount;
}
}  // namespace

QByteArray &SurveyorBlock() {
    static QByteArray block;
    return block;
}

double &SurveyorEnd() {
    static double end = 0;
    return end;
}

float SurveyorReading(uint8_t reading, bool highRange) {
    if (!highRange && reading < 4) return 0.0f;
    return float(RoundHalfEven(reading * (highRange ? 200.0 : 2.0) / 1024.0, 2));
}

void SpacchettaBlocco(int32_t index) {
    TrapVoid("SpacchettaBlocco", [&] {
        const QByteArray &block = SurveyorBlock();
        if (block.size() < kSurveyorHeaderSize) Raise(err::Subscript);
        const auto *b = reinterpret_cast<const uint8_t *>(block.constData());
        const int32_t records = b[0] | b[1] << 8;
        const int32_t step = b[2] | b[3] << 8;
        const double date = BlockDate(b);
        // The block holds 1000 records: a count beyond them is a fault, not a read past the end.
        if (records > kSurveyorMaxRecords || block.size() < kSurveyorHeaderSize + qsizetype(records) * 4)
            Raise(err::Subscript);
        const size_t n = size_t(records);
        std::vector<float> x(n), y(n), z(n);
        for (int32_t k = 0; k < records; ++k) {
            const uint8_t *r = b + kSurveyorHeaderSize + size_t(k) * 4;
            x[size_t(k)] = SurveyorReading(r[0], r[3] & 1);
            y[size_t(k)] = SurveyorReading(r[1], r[3] & 2);
            z[size_t(k)] = SurveyorReading(r[2], r[3] & 4);
        }
        MeasurementData &d = Data();
        int32_t offset = 0;
        if (index == 0) {
            d.SetShortID(QString());
            d.SetLongID(QString());
            d.DataIsCsv = false;
            d.DataCount = 0;
            GrowArrays(d, records, 0.0f);
            d.DataCount = records;
            d.DataStepUnit = QStringLiteral("n");
            d.DataStep = step;
            d.DataPresent = true;
            d.DataSaved = false;
            d.DataStart = date;
        } else {
            // One empty sample per minute of the gap, whatever the step.
            const int64_t gap = std::max<int64_t>(0, DateDiff(QStringLiteral("n"), SurveyorEnd(), date));
            const int64_t total = int64_t(d.DataCount) + gap + records;
            if (total > std::numeric_limits<int32_t>::max()) Raise(err::Overflow);
            GrowArrays(d, int32_t(d.DataCount + gap), -1.0f);
            d.DataCount = int32_t(d.DataCount + gap);
            offset = d.DataCount;
            GrowArrays(d, int32_t(total), 0.0f);
            d.DataCount = int32_t(total);
        }
        SurveyorEnd() = DateAdd(d.DataStepUnit, double(d.DataStep) * d.DataCount, d.DataStart);
        for (int32_t k = 1; k <= records; ++k) {
            const size_t slot = size_t(offset) + size_t(k);
            const float fx = x[size_t(k - 1)], fy = y[size_t(k - 1)], fz = z[size_t(k - 1)];
            d.DataX[slot] = fx;
            d.DataY[slot] = fy;
            d.DataZ[slot] = fz;
            d.DataValue[slot] =
                RoundHalfEven(std::sqrt(double(fx) * fx + double(fy) * fy + double(fz) * fz), 2);
        }
    });
}

bool DownloadSurveyorData() {
    bool waiting = false;
    const bool ok = Trap("DownloadSurveyorData", false, [&] {
        SerialPort &port = Seriale();
        if (!port.PortOpen()) {
            Say("Nessuna porta seriale disponibile per la comunicazione");
            return false;
        }
        Host().WaitShow();
        waiting = true;
        port.ClearInBuffer();
        port.Output(QByteArrayLiteral("E"));
        WaitOnPort([&] { return port.InBufferCount() >= kCountBytes; }, kCountWaitMs);
        if (port.InBufferCount() == 0) {
            Say("Errore nello scaricamento dei dati. Nessuna risposta dalla seriale.");
            return false;
        }
        const int32_t blocks = BlockCount(port.Input());
        port.Output(QByteArrayLiteral("H"));
        for (int32_t i = 0; i < blocks; ++i) {
            Host().WaitAnimate(20);
            // Once past 4011 bytes the block can no longer come out whole: no need to sit out the wait.
            WaitOnPort([&] { return port.InBufferCount() >= kSurveyorBlockSize; }, kBlockWaitMs);
            if (port.InBufferCount() != kSurveyorBlockSize) {
                Say("Errore nella ricezione dei blocchi dei dati");
                return false;
            }
            if (i % 2 == 0) {
                SurveyorBlock() = port.Input();
                SpacchettaBlocco(i);
            } else {
                port.Input();
                port.ClearInBuffer();
            }
            port.Output(QByteArrayLiteral("H"));
        }
        Host().WaitHide();
        waiting = false;
        if (blocks == 0) {
            Say("Non sono stati trovati dati validi all'interno della centralina");
            return true;
        }
        MeasurementData &d = Data();
        d.DataStop = SurveyorEnd();
        d.DataEnd = SurveyorEnd();
        d.DataSource = QStringLiteral("Surveyor");
        d.DataStopCode = -1;
        // New data from a unit belongs to no file yet: the windows must not name the old one.
        d.DataFile.clear();
        if (d.DataCount >= 1) {
            SeedValueOrder(d);
            CalculateStats(QStringLiteral("Data"));
            CalculateMediana();
            GenerateWarnings();
        }
        EnableDataButtons();
        Host().UpdateInfo();
        ShowWarningsIfWanted();
        return true;
    });
    if (waiting) Host().WaitHide();
    return ok;
}

}  // namespace fm
