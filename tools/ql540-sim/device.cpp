#include "device.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace sim {

uint16_t Crc(const uint8_t *data, size_t size) {
    uint16_t crc = 0;
    for (size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int b = 0; b < 8; ++b) crc = (crc & 1) ? uint16_t((crc >> 1) ^ 0xA001) : uint16_t(crc >> 1);
    }
    return crc;
}

int Bcd(int v) { return ((v / 10) % 10) << 4 | (v % 10); }
int FromBcd(uint8_t b) { return (b >> 4) * 10 + (b & 15); }

long long Hundredths(uint16_t reading, bool high) {
    if (!high && reading <= 3) return 0;
    // reading * full / 1024 in exact eighths of a hundredth, then half to even.
    const long long num = (long long)reading * (high ? 200 : 2) * 100;  // value * 100 * 1024
    long long q = num / 1024, r = num % 1024;
    if (r * 2 > 1024 || (r * 2 == 1024 && (q & 1))) ++q;
    return q;
}

namespace {
void PutDate(uint8_t *p, const std::tm &t) {
    p[0] = uint8_t(Bcd(t.tm_sec));
    p[1] = uint8_t(Bcd(t.tm_min));
    p[2] = uint8_t(Bcd(t.tm_hour));
    p[3] = uint8_t(Bcd(t.tm_mday) + ((t.tm_year + 1900 - 2012) & 3) * 64);
    p[4] = uint8_t(Bcd(t.tm_mon + 1));
}
} // namespace

Device::Device(int memorySize, int samples, const std::tm &clock) : memorySize_(memorySize) {
    // A session of 10 minutes' step that started when the clock was set, and ended at memory full.
    PutDate(&settings[0], clock);
    settings[5] = 3;     // minutes
    settings[6] = 0x10;  // step 10
    settings[7] = 0;     // started at once
    settings[16] = 0x07; // ended
    settings[18] = 1;    // memory full
    Generate(samples);
}

void Device::SetMemory(int size) {
    memorySize_ = size;
    Generate(-1);
}

int Device::Capacity() const { return std::min((memorySize_ - 96) / 7, (65532 - 96) / 7); }

Sample Device::MakeSample(int i) const {
    // A slow daily swing with a stronger stretch that needs the high range.
    const double day = std::sin(i / 144.0 * 6.2832);
    const double base = 0.6 + 0.5 * day + ((i / 300) % 7 == 3 ? 8.0 : 0.0);
    Sample s{};
    const double axes[3] = {base * 0.8, base * 0.55, base * 0.25 + (i % 13) * 0.01};
    uint16_t *out[3] = {&s.x, &s.y, &s.z};
    for (int a = 0; a < 3; ++a) {
        const bool high = axes[a] >= 1.9;
        const double reading = axes[a] * 1024 / (high ? 200.0 : 2.0);
        *out[a] = uint16_t(std::min(32767.0, std::max(0.0, std::round(reading))));
        if (high) s.flags |= uint8_t(1 << a);
    }
    return s;
}

void Device::Generate(int n) {
    const int capacity = Capacity();
    if (n < 0 || n > capacity) n = capacity;
    samples_.clear();
    for (int i = 0; i < n; ++i) samples_.push_back(MakeSample(i));
    const int end = noSamples ? 96 : 96 + int(samples_.size()) * 7;
    settings[13] = uint8_t(end >> 8);
    settings[14] = uint8_t(end & 0xFF);
}

namespace {
std::time_t WireTime(const uint8_t *p) {
    std::tm t{};
    t.tm_sec = FromBcd(p[0]);
    t.tm_min = FromBcd(p[1]);
    t.tm_hour = FromBcd(p[2]);
    t.tm_mday = FromBcd(p[3] & 0x3F);
    t.tm_mon = FromBcd(p[4] & 0x1F) - 1;
    t.tm_year = 112 + (p[3] >> 6);
    t.tm_isdst = -1;
    return std::mktime(&t);
}

int StepSeconds(uint8_t unit, uint8_t step) {
    static const int perUnit[8] = {0, 0, 1, 60, 3600, 86400, 0, 0};
    return perUnit[unit & 7] * FromBcd(step);
}
} // namespace

void Device::Record() {
    if (!recording_) return;
    const int step = StepSeconds(settings[5], settings[6]);
    const double elapsed =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - sessionClock_).count() * speed -
        startDelay_;
    if (elapsed < 0 || step <= 0) return;
    const int stopAddress = settings[13] * 256 + settings[14];
    const int limit = stopAddress ? std::min(Capacity(), (stopAddress - 96) / 7) : Capacity();
    const int n = int(std::min<double>(limit, std::floor(elapsed / step) + 1));
    while (int(samples_.size()) < n) samples_.push_back(MakeSample(int(samples_.size())));
    settings[16] = 0x03;
    if (n >= limit) {
        recording_ = false;
        settings[16] = 0x07;
        settings[18] = stopAddress ? 3 : 1;  // ended at its stop date, or at memory full
    }
}

std::vector<uint8_t> Device::MemoryImage() const {
    std::vector<uint8_t> m(96, 0);
    const int end = noSamples ? 96 : 96 + int(samples_.size()) * 7;
    // The header's end address is where recording got to.
    m[0] = uint8_t(end >> 8);
    m[1] = uint8_t(end & 0xFF);
    for (int i = 0; i < 5; ++i) m[size_t(2 + i)] = blankStart ? 0 : settings[size_t(i)];
    m[7] = settings[5];
    m[8] = settings[6];
    m[9] = settings[7];
    for (int i = 0; i < 5; ++i) m[size_t(10 + i)] = blankStart ? 0 : settings[size_t(8 + i)];
    m[15] = settings[13];
    m[16] = settings[14];
    m[20] = settings[18];
    const char sig[3] = {'R', 'O', badSignature ? 'X' : 'B'};
    std::copy(sig, sig + 3, m.begin() + 29);
    for (int i = 0; i < 16; ++i) m[size_t(32 + i)] = i < int(shortId.size()) ? uint8_t(shortId[size_t(i)]) : ' ';
    for (int i = 0; i < 48; ++i) m[size_t(48 + i)] = i < int(longId.size()) ? uint8_t(longId[size_t(i)]) : ' ';
    if (noSamples) return m;
    for (const Sample &s : samples_) {
        for (uint16_t v : {s.x, s.y, s.z}) {
            m.push_back(uint8_t(v >> 8));
            m.push_back(uint8_t(v & 0xFF));
        }
        m.push_back(s.flags);
    }
    return m;
}

std::vector<uint8_t> Device::Frame(uint8_t command, const std::vector<uint8_t> &payload) const {
    std::vector<uint8_t> f;
    const size_t length = payload.size() + 3;
    f.push_back(0x3C);
    f.push_back(uint8_t(length >> 8));
    f.push_back(uint8_t(length & 0xFF));
    f.push_back(command);
    f.insert(f.end(), payload.begin(), payload.end());
    const uint16_t crc = Crc(f.data(), f.size());
    f.push_back(uint8_t(crc >> 8));
    f.push_back(uint8_t(crc & 0xFF));
    return f;
}

std::vector<uint8_t> Device::Handle(uint8_t command, const std::vector<uint8_t> &p) {
    // Only the clock, the session block and the codes come with a payload; anything else
    // that carries one is refused, so that a stray payload shows.
    if (!p.empty() && command != 8 && command != 11 && command != 12) return Frame(0xFF, {0});
    Record();
    switch (command) {
    case 1: return Frame(1, std::vector<uint8_t>(4, 0));
    case 2: {
        // A field that drifts slowly; the X axis crosses into the high range now and then.
        const double t = double(liveTick_++);
        const double v[3] = {1.2 + 1.0 * std::sin(t / 20), 0.4 + 0.1 * std::cos(t / 7), 0.15};
        std::vector<uint8_t> out;
        uint8_t flags = batteryLow ? 0x80 : 0;
        for (int a = 0; a < 3; ++a) {
            const bool high = v[a] >= 1.9;
            const auto r = uint16_t(std::lround(v[a] * 1024 / (high ? 200.0 : 2.0)));
            out.push_back(uint8_t(r >> 8));
            out.push_back(uint8_t(r & 0xFF));
            if (high) flags |= uint8_t(1 << a);
        }
        out.push_back(flags);
        return Frame(2, out);
    }
    case 3: return Frame(3, {0});
    case 4: return Frame(4, MemoryImage());
    case 7: {
        std::vector<uint8_t> out;
        for (int i = 0; i < 16; ++i) out.push_back(i < int(shortId.size()) ? uint8_t(shortId[size_t(i)]) : ' ');
        for (int i = 0; i < 48; ++i) out.push_back(i < int(longId.size()) ? uint8_t(longId[size_t(i)]) : ' ');
        return Frame(7, out);
    }
    case 8:
        if (p.size() >= 64) {
            shortId.assign(p.begin(), p.begin() + 16);
            longId.assign(p.begin() + 16, p.begin() + 64);
        }
        return Frame(8, {0});
    case 9: return Frame(9, std::vector<uint8_t>(5, 0));
    case 10: return Frame(10, std::vector<uint8_t>(settings.begin(), settings.end()));
    case 11:
        if (p.size() >= 5) std::copy(p.begin(), p.begin() + 5, settings.begin());
        return Frame(11, {0});
    case 12:
        if (p.size() >= 10) std::copy(p.begin(), p.begin() + 10, settings.begin() + 5);
        return Frame(12, {0});
    case 13:
        // Waiting for its start date, or running at once; the memory starts empty.
        settings[16] = (settings[7] & 1) ? 0x01 : 0x03;
        samples_.clear();
        recording_ = true;
        sessionClock_ = std::chrono::steady_clock::now();
        startDelay_ = (settings[7] & 1) ? std::difftime(WireTime(&settings[8]), WireTime(&settings[0])) : 0;
        Record();
        return Frame(13, {0});
    case 14:
        recording_ = false;
        if (settings[16] & 1) {
            settings[16] = 0x07;
            settings[18] = 4;
        }
        return Frame(14, {0});
    default: return Frame(command, {0});
    }
}

} // namespace sim
