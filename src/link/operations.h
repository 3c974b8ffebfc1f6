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
// The logger keeps two bits of the year: the year modulo 4, 2012 counting as 0, the
// leap-year cycle of its clock. They stand for the one year with those bits from two
// years before the present year to one year after it.
int WireYear(int yearBits, int presentYear);
int PresentYear();  // the year of Now()
// The 5-byte date of the wire. A date that would read back as another year (outside
// the window around presentYear) raises fault 5.
std::array<uint8_t, 5> EncodeWireDate(const QDateTime &date, int presentYear);
// Day, month and year bits all zero: the logger holds no date.
bool IsBlankWireDate(const uint8_t *bytes);
// The year from the window around the present year; built by date arithmetic, so a
// day or month out of range rolls into a neighbour.
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
