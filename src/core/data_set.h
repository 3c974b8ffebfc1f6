#pragma once
// The one measurement the application holds, and the few variables that several
// subsystems share. Everything lives on the user-interface thread: no locks.
#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <vector>

namespace fm {

struct MeasurementData {
    bool DataPresent = false;
    bool DataSaved = false;
    double DataStart = 0;  // OLE Automation dates
    double DataStop = 0;
    double DataEnd = 0;
    int32_t DataStep = 0;
    QString DataStepUnit;  // "s", "n", "h" or "d"
    int32_t DataCount = 0;
    // Sample i lies in slot i, 1 to DataCount; slot 0 takes no sample.
    std::vector<float> DataX, DataY, DataZ;
    std::vector<float> DataRf;
    std::vector<double> DataValue;
    QString ShortID;  // always 16 characters, blank padded
    QString LongID;   // always 48 characters, blank padded
    double DataMedian = 0;
    int32_t MedianPos = 0;
    QString DataSource;
    float DataMax = 0, DataMin = 0, DataMean = 0;
    float AuxMax = 0, AuxMin = 0, AuxMean = 0;
    float RfMax = 0, RfMin = 0, RfMean = 0;
    QString DataFile;
    int16_t DataStopCode = 0;
    bool DataIsCsv = false;
    std::vector<double> SortedValue;
    std::vector<int32_t> SortedIndex;
    // Samples whose date text DataDate can give: the texts are made on demand from
    // DataStart and the step, so a load costs nothing per sample for them.
    int32_t DataDateCount = 0;

    // DataDate(i): the date of sample i in the general date form; empty for slot 0
    // and for samples that have no date.
    QString DataDate(int32_t i) const;
    // The OLE date of sample i: DataStart plus (i-1) steps.
    double SampleDate(int32_t i) const;

    // Sizes the arrays of n samples anew, zero-filled, as a new measurement needs them.
    void SizeArrays(int32_t n);
    void SetShortID(const QString &text);
    void SetLongID(const QString &text);
};

inline constexpr int kShortIdLength = 16;
inline constexpr int kLongIdLength = 48;
// Left-aligned, blank padded or cut to width.
QString FixedText(const QString &text, int width);

// The placeholder stop dates: "01/01/01 01:01:01" and "01/01/01 01:01:02".
double StopPlaceholder1();
double StopPlaceholder2();

// The variables of modVariabili that more than one subsystem touches.
struct SharedState {
    bool CommOpen = false;
    int16_t MonitorState = -1;
    QString CurrentCommand = QStringLiteral("254");
    std::array<QString, 6> UnitLetters;
    bool GraphTeOpen = false, GraphRfOpen = false, GraphStOpen = false, SourceOpen = false;
    int16_t RealTimeLogFile = 0;
    int16_t FailCount = 0;
    int KeepAliveTimer = 0, TimeoutTimer = 0, LiveTimer = 0;
    float LowRange = 2.0f, HighRange = 200.0f, StoredLowRange = 2.0f;
    QString HelpFileName;
};

// The record and the shared variables of the process.
MeasurementData &Data();
SharedState &Shared();

// Gives the shared variables their first values (Main, first step).
void InitVariabili();

} // namespace fm
