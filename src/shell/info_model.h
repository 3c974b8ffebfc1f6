#pragma once
// What the information panel shows, worked out without a window so that the panel,
// the command-line companion and the tests read the same texts.
#include "core/text_align.h"

#include <QString>
#include <array>
#include <cstdint>

namespace fm {

struct InfoTexts {
    QString shortId, longId;  // the untrimmed fields, or language string 3021
    QString step, source, count, start, stop;  // "---" without data
    std::array<QString, 4> values;  // minimum, maximum, mean, median: "#0.00 µT" or "---"
    bool dataPresent = false;
    bool saved = false;
    QString monitorText;
    uint32_t monitorBack = 0;  // 0x00BBGGRR
    QString commText;
    uint32_t commColor = 0;  // 0x00BBGGRR
    bool live = false;  // live figures: the median and the data pictures are left as they are
};

// The panel's texts from the shared state (data set, MonitorState, CommOpen).
InfoTexts BuildInfo();

// The word of a step unit letter ("s", "n", "h", "d").
QString StepUnitWord(const QString &letter);
// "#0.00 µT".
QString Microtesla(float value);
QString Microtesla(double value);

// The date on which a session from `start` fills the logger's memory of the options.
double MemoryEndDate(double start, int32_t step, const QString &unit);
// Samples that the memory of `memorySize` bytes holds: (size - 96) / 7, half to even.
int32_t MemoryCapacity(int32_t memorySize);

} // namespace fm
