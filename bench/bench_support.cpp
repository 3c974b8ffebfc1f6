#include "bench_support.h"

#include "analysis/statistics.h"
#include "core/data_set.h"

#include <sys/resource.h>
#include <QByteArray>
#include <QFile>
#include <cmath>
#include <random>

namespace bench {

long PeakRssMb() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024;
}

void WriteLog(const QString &path, int32_t samples, int stepSeconds) {
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write("\"Field Activity Log\"\r\n\"30/12/2025 20:00:00@01/01/2027 06:40:00@1\"\r\n\"" +
            QByteArray::number(stepSeconds) + "s\"\r\n");
    f.write("\"" + QByteArray::number(samples) + "\"\r\n\"QL540-0042\"\r\n\"Bench\"\r\n");
    std::mt19937 rng(540);
    std::normal_distribution<double> noise(0, 0.01);
    QByteArray chunk;
    for (int32_t i = 0; i < samples; ++i) {
        if (i % 50000 == 7) {
            chunk += "\"-1 -1 -1 0\"\r\n";
        } else {
            const double base = 0.3 + 0.25 * std::sin(i / 8640.0 * 6.283) + (i % 100000 < 500 ? 3.0 : 0.0);
            chunk += '"' + QByteArray::number(std::fabs(base * 0.8 + noise(rng)), 'f', 2) + ' ' +
                     QByteArray::number(std::fabs(base * 0.5 + noise(rng)), 'f', 2) + ' ' +
                     QByteArray::number(std::fabs(base * 0.3 + noise(rng)), 'f', 2) + "  0\"\r\n";
        }
        if (chunk.size() > (1 << 20)) {
            f.write(chunk);
            chunk.clear();
        }
    }
    f.write(chunk);
}

void FillLineField(fm::MeasurementData &d, int32_t n, double start) {
    d.DataCount = n;
    d.DataStart = start;
    d.DataStep = 3;
    d.DataStepUnit = QStringLiteral("s");
    if (d.DataValue.size() < size_t(n) + 1) d.DataValue.assign(size_t(n) + 1, 0.0);
    const bool axes = d.DataX.size() > size_t(n);
    std::mt19937 rng(540);
    std::normal_distribution<double> noise(0, 0.02);
    for (int32_t i = 1; i <= n; ++i) {
        const double base = 0.3 + 0.25 * std::sin(i / 28800.0 * 6.283) + (i % 100000 < 500 ? 3.0 : 0.0);
        const double v = i % 50000 == 7 ? -1.0 : std::round(std::fabs(base + noise(rng)) * 100) / 100;
        d.DataValue[size_t(i)] = v;
        if (axes) d.DataX[size_t(i)] = d.DataY[size_t(i)] = d.DataZ[size_t(i)] = float(v / std::sqrt(3.0));
    }
}

void MakeDataSet(int32_t n) {
    fm::InitVariabili();
    fm::MeasurementData &d = fm::Data();
    d = fm::MeasurementData{};
    d.DataPresent = true;
    d.DataCount = n;
    d.DataStep = 10;
    d.DataStepUnit = QStringLiteral("s");
    d.DataStart = 46000;
    d.SizeArrays(n);
    d.DataDateCount = n;
    for (int32_t i = 1; i <= n; ++i) {
        const double v = 0.3 + 0.25 * std::sin(i / 8640.0 * 6.283);
        d.DataX[size_t(i)] = float(v * 0.8);
        d.DataY[size_t(i)] = float(v * 0.5);
        d.DataZ[size_t(i)] = float(v * 0.3);
        d.DataValue[size_t(i)] = std::sqrt(v * v * 0.98);
        d.SortedValue[size_t(i)] = d.DataValue[size_t(i)];
        d.SortedIndex[size_t(i)] = i;
    }
    fm::CalculateStats(QStringLiteral("Data"));
    fm::CalculateMediana();
}
}  // namespace bench
