// Any bytes as a reply: the frame check must judge them, and the upload unpacking
// must refuse or take them without reading past what arrived.
#include "acquisition/upload.h"
#include "core/data_set.h"
#include "fuzz_support.h"
#include "link/packet.h"

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    fuzz::SetUp();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    fm::RxBuffer() = QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
    fm::RxLength() = int32_t(size);
    fm::AnalyzePacket();
    if (size >= 96) {
        fm::Data() = fm::MeasurementData{};
        fm::SplitUploadData();
    }
    return 0;
}
