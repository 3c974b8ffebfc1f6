// Any bytes as a "File Centralina" file: OpenCsv must report, never crash, and leave
// arrays that hold every counted record, whether it read the file or stopped.
#include "files/log_file.h"
#include "fuzz_support.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    fuzz::SetUpFiles();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QString path = fuzz::AsFile("in.csv", data, size);
    if (path.isEmpty()) return 0;
    fm::Data() = fm::MeasurementData{};
    const bool ok = fm::LoadFile(path);
    const fm::MeasurementData &d = fm::Data();
    const size_t need = size_t(d.DataCount) + 1;
    if (d.DataCount > 0) {
        for (size_t held :
             {d.DataX.size(), d.DataY.size(), d.DataZ.size(), d.DataRf.size(), d.DataValue.size()})
            if (held < need) std::abort();
    }
    if (ok && (!d.DataIsCsv || d.DataCount < 1 || !d.DataPresent)) std::abort();
    if (!ok && d.DataIsCsv) std::abort();
    return 0;
}
