// Frames, CRC, BCD and wire dates: the bytes that cross the serial line.
#include "core/fault.h"
#include "core/regional.h"
#include "link/operations.h"
#include "link/packet.h"
#include "core/language.h"
#include "link/status_decoding.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

namespace {
QByteArray Hex(const char *hex) { return QByteArray::fromHex(hex); }

QByteArray Reply(uint8_t command, const QByteArray &payload) {
    QByteArray f;
    const int total = payload.size() + 6;
    f.append(char(0x3C)).append(char((total - 3) / 256)).append(char((total - 3) % 256)).append(char(command));
    f.append(payload);
    const uint16_t crc = Crc16(reinterpret_cast<const uint8_t *>(f.constData()), size_t(f.size()));
    f.append(char(crc >> 8)).append(char(crc & 0xFF));
    return f;
}

bool Analyze(const QByteArray &bytes) {
    RxBuffer() = bytes;
    RxLength() = int32_t(bytes.size());
    return AnalyzePacket();
}
} // namespace

TEST(Frames, CrcAndCommandFrames) {
    CrcValue() = 0;
    for (char c : QByteArray("123456789")) CRC163(uint8_t(c));
    EXPECT_EQ(CrcValue(), 0xBB3D);

    CommandPacket().DataLength = 0;
    CreatePacket(3);
    EXPECT_EQ(CommandPacket().Frame(), Hex("3E0003 03 194D"));
    CreatePacket(14);
    EXPECT_EQ(CommandPacket().Frame(), Hex("3E00030EDC8C"));
    CommandPacket().DataLength = 64;
    CreatePacket(8);
    EXPECT_EQ(CommandPacket().LengthLow, 67);
    EXPECT_EQ(CommandPacket().Frame().size(), 70);
    CommandPacket().DataLength = 0;
}

TEST(Frames, OnlyAnExactReplyIsValid) {
    test::RecorderHost host;
    const QByteArray good = Reply(3, QByteArray(1, '\0'));
    EXPECT_TRUE(Analyze(good));

    QByteArray swapped = good;
    std::swap(swapped[5], swapped[6]);
    EXPECT_FALSE(Analyze(swapped));
    EXPECT_FALSE(Analyze(QByteArray(1, 'x') + good));  // stray byte in front
    EXPECT_FALSE(Analyze(good + QByteArray(1, '\0')));  // one byte too many
    EXPECT_FALSE(Analyze(good.left(good.size() - 1)));
    QByteArray command = good;
    command[0] = '>';
    EXPECT_FALSE(Analyze(command));
    EXPECT_TRUE(host.boxes.empty());

    // Too short to read: no frame, and reported.
    EXPECT_FALSE(Analyze(QByteArray(2, '<')));
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_TRUE(host.boxes[0].text.contains(QStringLiteral("AnalyzePacket")));

    const QByteArray big = Reply(4, QByteArray(294, 'a'));
    EXPECT_EQ(big.mid(1, 2), Hex("0129"));
    EXPECT_TRUE(Analyze(big));
}

TEST(WireFormats, BcdAndDates) {
    EXPECT_EQ(ToBcd(10), 0x10);
    EXPECT_EQ(ToBcd(9), 0x09);
    EXPECT_EQ(ToBcd(100), 0x100);  // does not fit a byte: the caller refuses it
    EXPECT_EQ(FromBcd(0x59), 59);

    const auto w = EncodeWireDate(QDateTime(QDate(2014, 12, 31), QTime(23, 59, 58)));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(w.data()), 5), Hex("585923B112"));
    EXPECT_EQ(EncodeWireDate(QDateTime(QDate(2012, 1, 31), QTime()))[3], 0x31);
    EXPECT_EQ(EncodeWireDate(QDateTime(QDate(2013, 1, 31), QTime()))[3], 0x71);
    EXPECT_THROW(EncodeWireDate(QDateTime(QDate(2026, 1, 1), QTime())), Fault);

    EXPECT_EQ(DecodeWireDate(w.data()), DateFromParts(2014, 12, 31, 23, 59, 58));
    const uint8_t blank[5] = {0x10, 0x20, 0x08, 0x00, 0x00};
    EXPECT_TRUE(IsBlankWireDate(blank));
    // 31 February rolls over into March.
    const uint8_t feb31[5] = {0, 0, 0, 0x31 + 64, 0x02};
    EXPECT_EQ(DecodeWireDate(feb31), DateFromParts(2013, 3, 3));
}

TEST(StatusDecoding, BitsSelectTheRow) {
    test::Fresh fresh(0);
    EXPECT_EQ(DecodeStatus(0x07, 4).text, QStringLiteral("TERMINATO (STOP UTENTE)"));
    EXPECT_TRUE(DecodeStatus(0x07, 4).startEnabled);
    EXPECT_EQ(DecodeStatus(0x01, 0).text, QStringLiteral("IN ATTESA DI PARTENZA"));
    EXPECT_EQ(DecodeStatus(0x05, 0).monitorState, 1);  // bit 2 counts only with bit 1
    EXPECT_EQ(DecodeStatus(0x06, 4).monitorState, 0);
    EXPECT_EQ(DecodeStatus(0x06, 4).text, ResString(3011));
    EXPECT_EQ(DecodeStatus(0x03, 0).text, ResString(3010));
    EXPECT_EQ(DecodeStatus(0x07, 7).text, QStringLiteral("TERMINATO (SCONOSCIUTO)"));
}
