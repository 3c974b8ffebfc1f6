// The unpacking of one Surveyor block: readings, the header, the gap rule, and the
// faults that end a block's unpacking without ending the import.
#include "acquisition/surveyor.h"
#include "core/data_set.h"
#include "core/regional.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

namespace {
// A block of `records` records starting at the given time; record k reads k, 2k, 255 - k
// with range flags k % 8.
QByteArray Block(int records, int step, int y, int mo, int d, int h, int mi, int s = 0) {
    QByteArray b(kSurveyorBlockSize, char(0x7E));  // what lies past the records is never read
    b[0] = char(records & 0xFF);
    b[1] = char(records >> 8);
    b[2] = char(step & 0xFF);
    b[3] = char(step >> 8);
    b[4] = char(s);
    b[5] = char(mi);
    b[6] = char(h);
    b[7] = char(test::MonthFirst() ? mo : d);
    b[8] = char(test::MonthFirst() ? d : mo);
    b[9] = char(y & 0xFF);
    b[10] = char(y >> 8);
    for (int k = 0; k < records && k < kSurveyorMaxRecords; ++k) {
        const int at = kSurveyorHeaderSize + 4 * k;
        b[at] = char(k);
        b[at + 1] = char(2 * k);
        b[at + 2] = char(255 - k);
        b[at + 3] = char(k % 8);
    }
    return b;
}

void Unpack(const QByteArray &block, int32_t index) {
    SurveyorBlock() = block;
    SpacchettaBlocco(index);
}

class SurveyorBlockTest : public ::testing::Test {
protected:
    test::Fresh fresh;
    test::RecorderHost host;
};
}  // namespace

TEST(SurveyorReading, ConversionAtTheEdgesRoundsHalfToEven) {
    EXPECT_EQ(SurveyorReading(3, false), 0.0f);
    EXPECT_EQ(SurveyorReading(4, false), 0.01f);  // 0.0078125
    EXPECT_EQ(SurveyorReading(255, false), 0.5f);
    EXPECT_EQ(SurveyorReading(64, false), 0.12f);  // 0.125, a tie, to the even digit
    EXPECT_EQ(SurveyorReading(0, true), 0.0f);
    EXPECT_EQ(SurveyorReading(3, true), 0.59f);   // the cut below 4 is the low range's alone
    EXPECT_EQ(SurveyorReading(16, true), 3.12f);  // 3.125
    EXPECT_EQ(SurveyorReading(48, true), 9.38f);  // 9.375
    EXPECT_EQ(SurveyorReading(255, true), 49.8f);
}

TEST_F(SurveyorBlockTest, FirstBlockStartsANewMeasurement) {
    Data().DataCount = 5;
    Data().DataX.assign(20001, 9.0f);  // a longer, older data set
    Data().DataValue.assign(20001, 9.0);
    Data().DataX[0] = 0.0f;
    Data().DataIsCsv = true;
    Data().SetShortID(QStringLiteral("OLD"));
    Unpack(Block(3, 10, 2026, 3, 14, 8, 30, 15), 0);
    const MeasurementData &d = Data();
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_TRUE(d.DataPresent && !d.DataSaved && !d.DataIsCsv);
    EXPECT_EQ(d.ShortID, QString(16, QLatin1Char(' ')));
    EXPECT_EQ(d.DataCount, 3);
    EXPECT_EQ(d.DataStep, 10);
    EXPECT_EQ(d.DataStart, DateFromParts(2026, 3, 14, 8, 30, 15));
    EXPECT_EQ(SurveyorEnd(), DateFromParts(2026, 3, 14, 9, 0, 15));
    ASSERT_EQ(d.DataValue.size(), 4u);
    // Record 2 reads 2, 4, 253 with flags 2: X low, Y high, Z low.
    EXPECT_EQ(d.DataX[3], 0.0f);
    EXPECT_EQ(d.DataY[3], 0.78f);
    EXPECT_EQ(d.DataZ[3], 0.49f);
    EXPECT_EQ(d.DataValue[3], 0.92);  // sqrt(0.78² + 0.49²) = 0.9211...
}

// A gap adds one empty sample a minute, whatever the step: the time axis after it stretches.
TEST_F(SurveyorBlockTest, GapsAddOneEmptySamplePerMinute) {
    Unpack(Block(2, 1, 2026, 3, 14, 8, 0), 0);  // ends 08:02
    Unpack(Block(2, 1, 2026, 3, 14, 8, 5), 2);  // three minutes later
    ASSERT_EQ(Data().DataCount, 7);
    for (int i : {3, 4, 5}) {
        EXPECT_EQ(Data().DataX[size_t(i)], -1.0f);
        EXPECT_EQ(Data().DataValue[size_t(i)], -1.0);
    }
    EXPECT_EQ(Data().DataZ[6], SurveyorReading(255, false));
    EXPECT_EQ(SurveyorEnd(), DateFromParts(2026, 3, 14, 8, 7));
    Unpack(Block(1, 1, 2026, 3, 14, 8, 7), 4);  // exactly at the end
    Unpack(Block(1, 1, 2026, 3, 14, 7, 0), 6);  // before it
    EXPECT_EQ(Data().DataCount, 9);
    EXPECT_NE(Data().DataValue[9], -1.0);
    // At a longer step the gap still counts minutes.
    Data() = MeasurementData{};
    Unpack(Block(2, 10, 2026, 3, 14, 8, 0), 0);  // ends 08:20
    Unpack(Block(1, 10, 2026, 3, 14, 8, 24), 2);
    EXPECT_EQ(Data().DataCount, 2 + 4 + 1);
    EXPECT_EQ(SurveyorEnd(), DateFromParts(2026, 3, 14, 9, 10));
}

TEST_F(SurveyorBlockTest, TooManyRecordsEndTheBlockOnly) {
    Unpack(Block(2, 1, 2026, 3, 14, 8, 0), 0);
    const double end = SurveyorEnd();
    Unpack(Block(1001, 1, 2026, 3, 14, 8, 2), 2);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_TRUE(host.boxes[0].system);
    EXPECT_TRUE(host.boxes[0].text.contains(QStringLiteral("Error Raised by  : SpacchettaBlocco")));
    EXPECT_EQ(Data().DataCount, 2);
    EXPECT_EQ(Data().DataX.size(), 3u);
    EXPECT_EQ(SurveyorEnd(), end);
    Unpack(Block(1, 1, 2026, 3, 14, 8, 2), 4);  // the next block goes on
    EXPECT_EQ(Data().DataCount, 3);
    // A block cut short is the same fault, not a read past its end.
    SurveyorBlock() = Block(10, 1, 2026, 3, 14, 8, 3).left(30);
    SpacchettaBlocco(6);
    EXPECT_EQ(host.boxes.size(), 2u);
    EXPECT_EQ(Data().DataCount, 3);
}

TEST_F(SurveyorBlockTest, AnUnreadableDateIsSaidAndLeftAtDayZero) {
    QByteArray b = Block(2, 1, 2026, 3, 14, 8, 0);
    b[7] = 32;
    b[8] = 13;
    Unpack(b, 0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.LastBox(), QStringLiteral("Il formato della data è errato."));
    EXPECT_EQ(Data().DataStart, 0.0);
    EXPECT_EQ(Data().DataCount, 2);
    // A later block with such a date lies before the end: no gap, appended as it is.
    Unpack(Block(2, 1, 2026, 3, 14, 8, 0), 0);
    b[9] = char(0xFF);  // year 65535 is no date either
    b[10] = char(0xFF);
    b[7] = 14;
    b[8] = 3;
    Unpack(b, 2);
    EXPECT_EQ(Data().DataCount, 4);
    EXPECT_EQ(host.boxes.size(), 2u);
}

// Full blocks to their last record, and no 16-bit count: seventy of them hold more
// samples than 16 bits can count.
TEST_F(SurveyorBlockTest, MoreSamplesThanSixteenBitsCount) {
    const QByteArray first = Block(kSurveyorMaxRecords, 1, 2000, 1, 1, 0, 0);
    for (int32_t i = 0; i < 140; i += 2) Unpack(first, i);  // each starts where the last ended: no gap
    ASSERT_TRUE(host.boxes.empty());
    EXPECT_EQ(Data().DataCount, 70'000);
    EXPECT_EQ(Data().DataX.size(), 70'001u);
    // Record 999 of a full block reads 231 (999 & 255), 206, 24, flags 7: all high.
    EXPECT_EQ(Data().DataX[1000], SurveyorReading(231, true));
    EXPECT_EQ(Data().DataY[1000], SurveyorReading(206, true));
    EXPECT_EQ(Data().DataZ[70'000], SurveyorReading(24, true));
    EXPECT_EQ(SurveyorEnd(), DateAdd(QStringLiteral("n"), 70'000, Data().DataStart));
}
