#pragma once
// A fixed "today" for the life of the object, in place of the computer's clock.
#include "core/regional.h"

namespace fm::test {
class ScopedClock {
public:
    explicit ScopedClock(double now) { Set(now); }
    ~ScopedClock() { SetClock({}); }
    void Set(double now) {
        SetClock([now] { return now; });
    }
};
}  // namespace fm::test
