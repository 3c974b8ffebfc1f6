#pragma once
// The user's settings: one fixed binary record of 24658 bytes, stored by position,
// read once at start and written once at exit. Byte for byte the record of the older
// platform, so an options file moves between the two.
#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>

namespace fm {

inline constexpr int kOptionsRecordSize = 24658;
inline constexpr int kOptionsTextSize = 4096;

struct OptionsRecord {
    uint8_t ComPort = 0;
    uint8_t Language = 0;
    bool ConnectOnStart = false;
    uint32_t ColorTrace1 = 0, ColorTrace2 = 0, ColorTrace3 = 0, ColorTrace4 = 0;  // 0x00BBGGRR
    uint32_t ColorBackTe = 0, ColorBars = 0, ColorBackSt = 0;
    uint32_t Reserved32 = 0;
    uint32_t ColorDraw = 0;
    uint32_t Reserved40 = 0;
    uint32_t ColorMeterLow = 0, ColorMeterHigh = 0;
    int16_t MainWindowState = 0;
    // Slot 0 is never used. Each holds 4096 characters, blank padded.
    std::array<QString, 5> RecentFile;
    QString LastPath;
    bool InfoDocked = false, InfoShown = false, ShowWarnings = false;
    bool OpenGraphTe = false, OpenGraphSt = false, OpenSource = false, WarnOnDate = false;
    float Soglia = 0;
    uint32_t ColorSoglia = 0;
    int32_t MemorySize = 0;
    bool FirstRun = false;

    // The record as it lies in the file.
    QByteArray ToBytes() const;
    // Takes what `bytes` holds field by field from the start; a short record leaves
    // the fields it lacks at zero (blank texts stay empty).
    static OptionsRecord FromBytes(const QByteArray &bytes);
    // The defaults of a first start, with LastPath the folder of the executable.
    static OptionsRecord Defaults();
};

OptionsRecord &Options();

// Fills Options() from the options file, or with the defaults when there is none.
// False when the file is there but could not be read: the defaults stand in, and the
// fault has been reported.
bool ReadOptions();
// Replaces the options file with Options(); a failure leaves the previous file whole.
void SaveOptions();

// A text field as the record holds it: left-aligned in 4096 blank-padded characters.
QString OptionText(const QString &text);

} // namespace fm
