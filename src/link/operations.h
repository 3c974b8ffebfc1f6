#pragma once
// The logger's commands as operations: identification, session settings, start, stop.
#include <QDateTime>
#include <array>
#include <cstdint>
#include <optional>

namespace fm {

// The decimal digits read as hexadecimal: 59 -> 0x59, 100 -> 0x100.
int ToBcd(int value);
int FromBcd(uint8_t byte);  // 0x59 -> 59
// The 5-byte date of the wire; years 2012 to 2015 only (fault 5 for others).
std::array<uint8_t, 5> EncodeWireDate(const QDateTime &date);
// Day, month and year bits all zero: the logger holds no date.
bool IsBlankWireDate(const uint8_t *bytes);
// Built by date arithmetic: a day or month out of range rolls into a neighbour.
double DecodeWireDate(const uint8_t *bytes);

bool ReadID();
bool WriteID();
bool StopMonitor();

// What the session dialog shows while a session starts, step by step.
class StartProgress {
public:
    virtual ~StartProgress() = default;
    virtual void Begin() = 0;              // progress frame shown, marks cleared
    virtual void SetState(int step) = 0;   // 0 to 4
    virtual void MarkFailed(int step) = 0;
    // Shows the close button and waits (letting events run) until it is pressed.
    virtual void WaitForClose() = 0;
    virtual void End(bool started) = 0;    // progress frame hidden; state shown
};

// Sets the clock, writes the session of MonitorImage and starts it. `now` is the
// computer's present date unless given.
bool StartMonitoraggio(StartProgress &progress, std::optional<QDateTime> now = std::nullopt);

} // namespace fm
