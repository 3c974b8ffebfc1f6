#pragma once
// What every target shares: a host that shows nothing and says no to every question,
// the shared variables set up, and (for the file readers) a scratch folder to write the
// input into.
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/host.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdint>

namespace fuzz {
class Silent : public fm::QuietHost {
public:
    bool MessBox(const QString &, const QString &, int, int) override { return false; }
    bool SystemBox(const QString &, const QString &, fm::SystemBoxKind) override { return false; }
};

inline void SetUp() {
    static Silent host;
    fm::SetHost(&host);
    fm::InitVariabili();
}

inline QTemporaryDir &Scratch() {
    static QTemporaryDir *dir = new QTemporaryDir;  // kept for the whole run
    return *dir;
}

// The input as a file of that name in the scratch folder; empty when it cannot be written.
inline QString AsFile(const char *name, const uint8_t *data, size_t size) {
    const QString path = Scratch().filePath(QLatin1String(name));
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return {};
    f.write(reinterpret_cast<const char *>(data), qint64(size));
    return path;
}

inline void SetUpFiles() {
    fm::SetWritableDir(Scratch().path());
    SetUp();
}
}  // namespace fuzz
