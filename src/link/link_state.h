#pragma once
// What the link knows of the logger besides the shared variables.
#include <array>
#include <cstdint>

namespace fm {
struct LinkState {
    std::array<int16_t, 26> MonitorSettings{};  // the settings block of command 10
    std::array<int16_t, 10> MonitorImage{};     // the session block for command 12
};
LinkState &Link();
} // namespace fm
