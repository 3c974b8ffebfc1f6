#include "files/file_names.h"

#include "core/fault.h"
#include "core/host.h"
#include "core/options.h"

namespace fm {

QString SplitFileName(const QString &path, bool fileOnly) {
    return Trap("SplitFileName", QString(), [&] {
        // Both separators count: paths here use "/", logs of the older platform "\".
        const int cut = int(std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/'))));
        if (fileOnly) return cut >= 0 ? path.mid(cut + 1) : path;
        return cut >= 0 ? path.left(cut + 1) : QString();
    });
}

void SaveMRUFile(const QString &fileName) {
    TrapVoid("SaveMRUFile", [&] {
        auto &recent = Options().RecentFile;
        bool found = false;
        for (int i = 1; i <= 4; ++i) {
            if (recent[size_t(i)].trimmed() != fileName) continue;
            found = true;
            const QString hit = recent[size_t(i)];
            for (int j = i; j > 1; --j) recent[size_t(j)] = recent[size_t(j - 1)];
            recent[1] = hit;
            break;
        }
        if (!found) {
            for (int j = 4; j > 1; --j) recent[size_t(j)] = recent[size_t(j - 1)];
            recent[1] = OptionText(fileName);
        }
        Host().RecentFilesChanged();
    });
}

} // namespace fm
