#include "unit.h"

#include <cstdio>

namespace surveyor {
namespace {
// Round half to even of num / den, both positive.
long long RoundHalfEven(long long num, long long den) {
    const long long q = num / den, r = num % den;
    if (2 * r > den || (2 * r == den && (q & 1))) return q + 1;
    return q;
}

void Put16(std::vector<uint8_t> &b, size_t at, int value) {
    b[at] = uint8_t(value & 0xFF);
    b[at + 1] = uint8_t((value >> 8) & 0xFF);
}

void PutDate(std::vector<uint8_t> &b, std::time_t t, bool monthFirst) {
    std::tm tm{};
    gmtime_r(&t, &tm);
    b[4] = uint8_t(tm.tm_sec);
    b[5] = uint8_t(tm.tm_min);
    b[6] = uint8_t(tm.tm_hour);
    b[7] = uint8_t(monthFirst ? tm.tm_mon + 1 : tm.tm_mday);
    b[8] = uint8_t(monthFirst ? tm.tm_mday : tm.tm_mon + 1);
    Put16(b, 9, tm.tm_year + 1900);
}

long long FloorMinutes(std::time_t t) {
    return t >= 0 ? t / 60 : -((-t + 59) / 60);
}
}  // namespace

long long Hundredths(uint8_t reading, bool highRange) {
    if (!highRange && reading < 4) return 0;
    // reading × 200 / 1024 or × 2 / 1024 µT, in hundredths.
    return RoundHalfEven(reading * (highRange ? 20000LL : 200LL), 1024);
}

Unit::Unit(const Plan &p) : plan(p) {
    long long count = 0;  // samples the application holds so far
    uint32_t seed = 12345;
    for (int i = 0; i < p.blocks; ++i) {
        std::vector<uint8_t> b(kBlockSize, 0);
        const bool faulty = i == p.faultBlock;
        if (i % 2 == 1) {
            // Dropped unread: filled so that unpacking it by mistake would be caught.
            for (size_t k = 0; k < kBlockSize; ++k) b[k] = uint8_t(0xA5 ^ k);
            Put16(b, 0, 0xFFFF);
            blocks.push_back(b);
            continue;
        }
        // The application reckons its running end from the first start alone.
        const std::time_t end = p.start + std::time_t(count * p.step * 60);
        std::time_t start = p.start;
        if (i > 0) start = i == p.overlapBlock ? end - p.overlap * 60 : end + std::time_t(p.gap) * 60;
        Put16(b, 0, p.records);
        Put16(b, 2, p.step);
        PutDate(b, start, p.monthFirst);
        std::vector<Sample> samples;
        for (int k = 0; k < p.records; ++k) {
            seed = seed * 1103515245u + 12345u;
            const uint8_t r[4] = {uint8_t(k + i), uint8_t(seed >> 16), uint8_t(255 - k),
                                  uint8_t((seed >> 8) & 7)};
            for (int a = 0; a < 4; ++a) b[11 + size_t(k) * 4 + size_t(a)] = r[a];
            samples.push_back(
                {true, Hundredths(r[0], r[3] & 1), Hundredths(r[1], r[3] & 2), Hundredths(r[2], r[3] & 4)});
        }
        if (faulty && plan.fault == "bad-date") {
            b[7] = 32;
            b[8] = 13;
        }
        const bool unpacked = !(faulty && plan.fault == "too-many-records");
        if (faulty && plan.fault == "too-many-records") Put16(b, 0, kMaxRecords + 1);
        if (unpacked) {
            // An unreadable date is day 0, long before the end: no gap.
            const bool dated = !(faulty && plan.fault == "bad-date");
            const long long gap = i > 0 && dated ? FloorMinutes(start) - FloorMinutes(end) : 0;
            for (long long g = 0; g < gap; ++g) expected.push_back({false, 0, 0, 0});
            expected.insert(expected.end(), samples.begin(), samples.end());
            count = (long long)expected.size();
        }
        blocks.push_back(b);
    }
}

bool DumpSamples(const Unit &unit, const std::string &path) {
    FILE *f = std::fopen(path.c_str(), "w");
    if (!f) return false;
    for (const Unit::Sample &s : unit.expected) {
        if (!s.present) {
            std::fputs("-1.00 -1.00 -1.00\n", f);
            continue;
        }
        std::fprintf(f, "%lld.%02lld %lld.%02lld %lld.%02lld\n", s.x / 100, s.x % 100, s.y / 100, s.y % 100,
                     s.z / 100, s.z % 100);
    }
    return std::fclose(f) == 0;
}

}  // namespace surveyor
