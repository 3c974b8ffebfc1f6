#pragma once
// Frames on the serial line: ">" commands out, "<" replies in, each closed by a
// CRC-16/ARC of everything before it, high byte first.
#include <QByteArray>
#include <array>
#include <cstdint>

namespace fm {

struct TCommandPacket {
    uint8_t StartByte = 0, LengthHigh = 0, LengthLow = 0, CommandCode = 0;
    std::array<uint8_t, 65> Data{};
    uint8_t CrcLow = 0, CrcHigh = 0;
    uint8_t DataLength = 0;
    // The frame in wire order.
    QByteArray Frame() const;
};

// The one command buffer, the running CRC register, and the last reply.
TCommandPacket &CommandPacket();
int32_t &CrcValue();
QByteArray &RxBuffer();
int32_t &RxLength();

void CRC163(uint8_t value);
void CreatePacket(uint8_t command);
// True when RxBuffer with its RxLength bytes is exactly one valid reply frame.
bool AnalyzePacket();

// CRC-16/ARC of a byte range, for callers that need the value alone.
uint16_t Crc16(const uint8_t *data, size_t size);

} // namespace fm
