#pragma once
// What the logger's status bits and end code say about its session.
#include <QString>
#include <cstdint>

namespace fm {
struct SessionStatus {
    int monitorState = 0;   // 1 waiting or running, 0 none or ended
    QString text;           // for the status line
    uint32_t backColour = 0;  // 0x00BBGGRR
    bool startEnabled = false, stopEnabled = false;
};
SessionStatus DecodeStatus(int statusBits, int endCode);
QString EndCodeText(int endCode);
} // namespace fm
