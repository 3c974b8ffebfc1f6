// Any bytes as a log file: LoadFile must report, never crash, and leave arrays that
// agree with the count.
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
};
Silent g_host;
QTemporaryDir *g_dir = nullptr;
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    g_dir = new QTemporaryDir;
    fm::SetWritableDir(g_dir->path());
    fm::SetHost(&g_host);
    fm::InitVariabili();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QString path = g_dir->filePath(QStringLiteral("in.log"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly)) return 0;
        f.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    fm::Data() = fm::MeasurementData{};
    if (fm::LoadFile(path)) {
        const fm::MeasurementData &d = fm::Data();
        if (d.DataValue.size() != size_t(d.DataCount) + 1 || d.DataDate(d.DataCount).isEmpty()) std::abort();
    }
    return 0;
}
