#pragma once
// The record of live mode: its samples and running figures, apart from the data set.
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

namespace fm {
struct LiveRecord {
    int32_t RTCount = 0;
    // Sample i lies in slot i, from 1; slot 0 stays 0. The vectors grow by doubling, so
    // a long run never copies the whole of them for each sample.
    std::vector<float> RTX, RTY, RTZ;
    std::vector<double> RTValue;
    std::array<float, 4> RTSample{};  // the newest sample: X, Y, Z, resultant
    float RTMax = 0, RTMin = 0, RTMean = 0;
    QString RTShortID = QString(16, QLatin1Char(' '));
    QString RTLongID = QString(48, QLatin1Char(' '));
    double RTStart = 0;
    int32_t RTStep = 3;
    QString RTStepUnit = QStringLiteral("s");
    QString RTSource;
    bool RTShowInfo = false;
    // Lines written to the real-time log since it was opened, and where its count goes.
    int64_t RealTimeLines = 0;
    int64_t RealTimeCountPos = 0;
    // A line could not be written: live mode stopped, the log keeps what reached it.
    bool LogFailed = false;

    // Makes room for sample RTCount, keeping the earlier ones.
    void Grow();
    // The date of sample i: the start plus i - 1 steps, never a clock reading.
    double SampleDate(int32_t i) const;
};

LiveRecord &Live();
}  // namespace fm
