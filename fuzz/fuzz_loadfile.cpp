// Any bytes as a log file: LoadFile must report, never crash, and leave arrays that
// agree with the count.
#include "files/log_file.h"
#include "fuzz_support.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    fuzz::SetUpFiles();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QString path = fuzz::AsFile("in.log", data, size);
    if (path.isEmpty()) return 0;
    fm::Data() = fm::MeasurementData{};
    if (fm::LoadFile(path)) {
        const fm::MeasurementData &d = fm::Data();
        if (d.DataValue.size() != size_t(d.DataCount) + 1 || d.DataDate(d.DataCount).isEmpty()) std::abort();
    }
    return 0;
}
