#pragma once
// A Surveyor unit's memory as its serial protocol shows it: stored blocks of 4011
// bytes. Written apart from the application's own import code, so that the two check
// each other.
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace surveyor {

inline constexpr size_t kBlockSize = 4011;
inline constexpr int kMaxRecords = 1000;

struct Plan {
    int blocks = 4;         // stored blocks, the unpacked even ones and the dropped odd ones
    int records = 1000;     // records per even block
    int step = 1;           // minutes
    std::time_t start = 0;  // the first block's start, UTC seconds
    int gap = 0;            // minutes between one even block's end and the next one's start
    int overlapBlock = -1;  // this even block starts `overlap` minutes before the end so far
    int overlap = 5;
    bool monthFirst = false;  // the two date fields as month/day instead of day/month
    std::string fault = "none";
    int faultBlock = 2;
};

// One record's reading in hundredths of µT, as the application must compute it.
long long Hundredths(uint8_t reading, bool highRange);

struct Unit {
    explicit Unit(const Plan &plan);
    Plan plan;
    std::vector<std::vector<uint8_t>> blocks;
    // The data set the application must end with: per sample x, y, z in hundredths,
    // or no value for a minute of a gap.
    struct Sample {
        bool present;
        long long x, y, z;
    };
    std::vector<Sample> expected;
};

// Writes the expected samples, one "x y z" line each, "-1.00 -1.00 -1.00" for a gap.
bool DumpSamples(const Unit &unit, const std::string &path);

}  // namespace surveyor
