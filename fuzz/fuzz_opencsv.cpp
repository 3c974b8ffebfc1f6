// Any bytes as a "File Centralina" file: OpenCsv must report, never crash, and leave
// arrays that hold every counted record, whether it read the file or stopped.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"
#include "files/log_file.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace {
class Silent : public fm::QuietHost {
public:
    bool MessBox(const QString &, const QString &, int, int) override { return false; }
    bool SystemBox(const QString &, const QString &, fm::SystemBoxKind) override { return false; }
};
Silent g_host;
QTemporaryDir *g_dir = nullptr;
}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    g_dir = new QTemporaryDir;
    fm::SetWritableDir(g_dir->path());
    fm::SetHost(&g_host);
    fm::InitVariabili();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QString path = g_dir->filePath(QStringLiteral("in.csv"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly)) return 0;
        f.write(reinterpret_cast<const char *>(data), qint64(size));
    }
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
