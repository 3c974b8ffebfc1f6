// Any bytes as a reply: the frame check must judge them, and the upload unpacking
// must refuse or take them without reading past what arrived.
#include "acquisition/upload.h"
#include "core/data_set.h"
#include "core/host.h"
#include "link/packet.h"

#include <cstdint>

namespace {
class Silent : public fm::QuietHost {
public:
    bool MessBox(const QString &, const QString &, int, int) override { return false; }
    bool SystemBox(const QString &, const QString &, fm::SystemBoxKind) override { return false; }
};
Silent g_host;
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    fm::SetHost(&g_host);
    fm::InitVariabili();
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
