#pragma once
// A QL540 as its serial protocol shows it: memory, session settings, clock, codes,
// live readings. Written apart from the application's own protocol code, so that the
// two check each other.
#include <array>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace sim {

uint16_t Crc(const uint8_t *data, size_t size);
int Bcd(int value);
int FromBcd(uint8_t b);

struct Sample {
    uint16_t x, y, z;  // 15-bit readings
    uint8_t flags;     // bit i: axis i on the high range
};

// The value the application must compute for a reading, in hundredths of µT.
long long Hundredths(uint16_t reading, bool highRange);

struct Faults {
    std::string kind = "none";  // none, no-answer, refuse, bad-crc, stray-byte, truncate, late,
                                // wrong-command, short, silent-upload, bad-signature, no-samples,
                                // blank-start
    int command = -1;           // only this command, or every command
    bool once = false;
};

class Device {
public:
    // `clock`: the date the logger's clock holds at power-on, which is also the start of
    // the finished session in its memory.
    Device(int memorySize, int samples, const std::tm &clock);
    // The whole reply frame to a command with its payload (empty when there is no answer).
    std::vector<uint8_t> Handle(uint8_t command, const std::vector<uint8_t> &payload);
    std::vector<uint8_t> MemoryImage() const;  // what an upload carries after the frame head
    const std::vector<Sample> &Samples() const { return samples_; }
    void Generate(int samples);
    void SetMemory(int size);

    std::string shortId = "QL540-SIM", longId = "Simulated logger";
    std::array<uint8_t, 19> settings{};  // the block of command 10
    bool batteryLow = false;
    bool blankStart = false, badSignature = false, noSamples = false;
    // How many times faster than the wall clock a running session records (tests, demos).
    double speed = 1.0;

private:
    std::vector<uint8_t> Frame(uint8_t command, const std::vector<uint8_t> &payload) const;
    Sample MakeSample(int i) const;
    int Capacity() const;
    // A started session records one sample per step from its start until its stop
    // address or the memory is full; brought up to date before every command.
    void Record();
    bool recording_ = false;
    std::chrono::steady_clock::time_point sessionClock_;
    double startDelay_ = 0;  // seconds from the start command to the programmed start
    int memorySize_;
    std::vector<Sample> samples_;
    long long liveTick_ = 0;
};

} // namespace sim
