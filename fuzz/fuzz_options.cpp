// Any bytes as an options file: read field by field, and written back as exactly one
// record that reads the same again.
#include "core/options.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray in(reinterpret_cast<const char *>(data), qsizetype(size));
    const fm::OptionsRecord o = fm::OptionsRecord::FromBytes(in);
    const QByteArray out = o.ToBytes();
    if (out.size() != fm::kOptionsRecordSize) std::abort();
    if (fm::OptionsRecord::FromBytes(out).ToBytes() != out) std::abort();
    return 0;
}
