#pragma once
// The record of live mode: its samples and running figures, apart from the data set.
#include <cstdint>
#include <vector>

namespace fm {
struct LiveRecord {
    int32_t RTCount = 0;
    // Sample i lies in slot i, from 1.
    std::vector<float> RTX, RTY, RTZ;
    std::vector<double> RTValue;
    std::vector<double> RTSample;  // OLE date of each sample
    float RTMax = 0, RTMin = 0, RTMean = 0;
};

LiveRecord &Live();
} // namespace fm
