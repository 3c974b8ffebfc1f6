// Frames, CRC, BCD and wire dates: the bytes that cross the serial line.
#include "core/fault.h"
#include "core/regional.h"
#include "link/operations.h"
#include "link/packet.h"
#include "core/language.h"
#include "link/status_decoding.h"
#include "support/clock.h"
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
    test::ScopedClock today(DateFromParts(2014, 6, 1));
    EXPECT_EQ(ToBcd(10), 0x10);
    EXPECT_EQ(ToBcd(100), 0x100);  // does not fit a byte: the caller refuses it
    EXPECT_EQ(FromBcd(0x59), 59);

    const auto w = EncodeWireDate(QDateTime(QDate(2014, 12, 31), QTime(23, 59, 58)), 2014);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char *>(w.data()), 5), Hex("585923B112"));
    EXPECT_EQ(EncodeWireDate(QDateTime(QDate(2012, 1, 31), QTime()), 2013)[3], 0x31);
    EXPECT_EQ(EncodeWireDate(QDateTime(QDate(2013, 1, 31), QTime()), 2013)[3], 0x71);

    EXPECT_EQ(DecodeWireDate(w.data()), DateFromParts(2014, 12, 31, 23, 59, 58));
    const uint8_t blank[5] = {0x10, 0x20, 0x08, 0x00, 0x00};
    EXPECT_TRUE(IsBlankWireDate(blank));
    // 31 February rolls over into March.
    const uint8_t feb31[5] = {0, 0, 0, 0x31 + 64, 0x02};
    EXPECT_EQ(DecodeWireDate(feb31), DateFromParts(2013, 3, 3));
}

TEST(WireFormats, TheYearBitsCycleEveryFourYears) {
    // Any present year goes on the wire (the bytes of a whole date: above).
    for (int present = 2012; present <= 2100; ++present) {
        SCOPED_TRACE(present);
        // The window runs from two years back to one ahead, each year once.
        for (int year = present - 2; year <= present + 1; ++year)
            EXPECT_EQ(WireYear((year - 2012) & 3, present), year);
        EXPECT_EQ(EncodeWireDate(QDateTime(QDate(present, 12, 31), QTime(23, 59, 59)), present)[3] >> 6,
                  (present - 2012) % 4);
    }
    // Years that would come back as others are refused, not sent.
    EXPECT_THROW(EncodeWireDate(QDateTime(QDate(2028, 1, 1), QTime()), 2026), Fault);  // reads as 2024
    EXPECT_THROW(EncodeWireDate(QDateTime(QDate(2023, 1, 1), QTime()), 2026), Fault);  // reads as 2027
    EXPECT_NO_THROW(EncodeWireDate(QDateTime(QDate(2027, 12, 31), QTime()), 2026));
}

TEST(WireFormats, ReadingADateTakesTheYearFromToday) {
    const auto wire = [](int year, int month, int day) {
        return EncodeWireDate(QDateTime(QDate(year, month, day), QTime(9, 30)), year);
    };
    // Which year of the window a wire date is in: the loop above. Here, that the window
    // is today's: at the turn of the year bits 0 are 2024 until midnight, 2028 after it.
    const auto leap = wire(2024, 2, 29);
    test::ScopedClock today(DateFromParts(2026, 12, 31, 23, 59, 59));
    EXPECT_EQ(DecodeWireDate(leap.data()), DateFromParts(2024, 2, 29, 9, 30));
    today.Set(DateFromParts(2027, 1, 1));
    EXPECT_EQ(DecodeWireDate(leap.data()), DateFromParts(2028, 2, 29, 9, 30));
    EXPECT_EQ(DecodeWireDate(wire(2025, 12, 31).data()), DateFromParts(2025, 12, 31, 9, 30));
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
