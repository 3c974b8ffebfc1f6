#pragma once
// A Surveyor unit's stored data into the data set, block by block, over the logger's
// port but with the unit's own protocol: "E" asks for the count, "H" for each block.
#include <QByteArray>
#include <cstdint>

namespace fm {

inline constexpr int kSurveyorBlockSize = 4011;
inline constexpr int kSurveyorHeaderSize = 11;
inline constexpr int kSurveyorMaxRecords = 1000;

// True when the caller should open the views.
bool DownloadSurveyorData();
// Unpacks SurveyorBlock(), the block with that index, into the data set. Faults are
// reported under its own name; the import goes on with the next block.
void SpacchettaBlocco(int32_t index);

// The last block received.
QByteArray &SurveyorBlock();
// The running end of the data imported so far.
double &SurveyorEnd();

// The value of one 8-bit reading in µT, rounded to two decimals.
float SurveyorReading(uint8_t reading, bool highRange);

}  // namespace fm
