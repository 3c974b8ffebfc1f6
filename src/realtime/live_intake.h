#pragma once
// Live replies into live samples, and the panel's live figures.
#include "shell/info_model.h"

#include <array>
#include <cstdint>

namespace fm {
struct LiveReading {
    std::array<float, 4> sample{};  // X, Y, Z, resultant in µT
    bool batteryFlag = false;       // bit 7 of the flags
    uint8_t flagsAfter = 0;         // the flags byte once shifted past the three axes
};
// The 13-byte reply to command 2: readings in bytes 4 to 9, flags in byte 10.
LiveReading ConvertLiveReply(const uint8_t *frame, double lowRange, double highRange);

// Turns the reply to command 2 in RxBuffer into the next live sample.
void SplitDataReadData();
// The panel's texts for the live record (the median and the data pictures stay).
InfoTexts BuildRTInfo();
void UpdateRTInfo();
}  // namespace fm
