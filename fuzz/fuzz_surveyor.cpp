// Any bytes as a Surveyor block: the unpacking must take them or report a fault,
// never read past what arrived, and leave the count and the arrays agreeing.
#include "acquisition/surveyor.h"
#include "core/data_set.h"
#include "fuzz_support.h"

#include <cstdint>

namespace {

void Check() {
    const fm::MeasurementData &d = fm::Data();
    // A fresh record has no arrays yet; once a block is in, they hold every sample.
    if (d.DataCount == 0) return;
    const size_t n = size_t(d.DataCount) + 1;
    if (d.DataCount < 0 || d.DataX.size() < n || d.DataY.size() < n || d.DataZ.size() < n ||
        d.DataValue.size() < n)
        __builtin_trap();
}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    fuzz::SetUp();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fm::Data() = fm::MeasurementData{};
    fm::SurveyorEnd() = 0;
    fm::SurveyorBlock() = QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
    // As the first block, then again as a later one: the same date lies at or before
    // the end, so the later path runs without a gap of years.
    fm::SpacchettaBlocco(0);
    Check();
    fm::SpacchettaBlocco(2);
    Check();
    return 0;
}
