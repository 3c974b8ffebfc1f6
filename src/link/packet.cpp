#include "link/packet.h"

#include "core/fault.h"

namespace fm {

TCommandPacket &CommandPacket() {
    static TCommandPacket packet;
    return packet;
}
int32_t &CrcValue() {
    static int32_t crc = 0;
    return crc;
}
QByteArray &RxBuffer() {
    static QByteArray rx;
    return rx;
}
int32_t &RxLength() {
    static int32_t length = 0;
    return length;
}

QByteArray TCommandPacket::Frame() const {
    QByteArray f;
    f.reserve(6 + DataLength);
    f.append(char(StartByte)).append(char(LengthHigh)).append(char(LengthLow)).append(char(CommandCode));
    f.append(reinterpret_cast<const char *>(Data.data()), DataLength);
    f.append(char(CrcHigh)).append(char(CrcLow));
    return f;
}

// Bit by bit, no table: the frames are short, and an upload passes once.
void CRC163(uint8_t value) {
    int32_t &crc = CrcValue();
    for (int bit = 0; bit < 8; ++bit) {
        const bool differ = ((value ^ crc) & 1) != 0;
        crc >>= 1;
        if (differ) crc ^= 0xA001;
        value >>= 1;
    }
}

uint16_t Crc16(const uint8_t *data, size_t size) {
    uint32_t crc = 0;
    for (size_t i = 0; i < size; ++i) {
        uint8_t v = data[i];
        for (int bit = 0; bit < 8; ++bit) {
            const bool differ = ((v ^ crc) & 1) != 0;
            crc >>= 1;
            if (differ) crc ^= 0xA001;
            v >>= 1;
        }
    }
    return uint16_t(crc);
}

void CreatePacket(uint8_t command) {
    TCommandPacket &p = CommandPacket();
    p.StartByte = 0x3E;
    p.CommandCode = command;
    p.LengthHigh = 0;
    p.LengthLow = uint8_t(p.DataLength + 3);
    CrcValue() = 0;
    for (uint8_t b : {p.StartByte, p.LengthHigh, p.LengthLow, p.CommandCode}) CRC163(b);
    for (int i = 0; i < p.DataLength; ++i) CRC163(p.Data[size_t(i)]);
    p.CrcLow = uint8_t(CrcValue() & 0xFF);
    p.CrcHigh = uint8_t((CrcValue() & 0xFF00) / 256);
}

bool AnalyzePacket() {
    return Trap("AnalyzePacket", false, [] {
        const QByteArray &rx = RxBuffer();
        const int32_t n = RxLength();
        if (n < 3 || rx.size() < n) Raise(err::Subscript);
        const auto *b = reinterpret_cast<const uint8_t *>(rx.constData());
        const bool start = b[0] == 0x3C;
        const bool length = int32_t(b[1]) * 256 + b[2] == n - 3;
        // A frame too short to hold its CRC cannot carry a matching one.
        bool crc = false;
        if (n >= 5) {
            const uint16_t c = Crc16(b, size_t(n - 2));
            CrcValue() = c;
            crc = b[n - 2] == (c >> 8) && b[n - 1] == (c & 0xFF);
        }
        return start && length && crc;
    });
}

} // namespace fm
