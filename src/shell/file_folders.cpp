#include "shell/file_folders.h"

#include "core/app_paths.h"
#include "core/fault.h"
#include "core/options.h"
#include "files/file_names.h"
#include "shell/desktop_settings.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace fm {
namespace {
QString Section() {
    return QStringLiteral("Folders");
}

QString Key(FileKind kind) {
    return kind == FileKind::Tables ? QStringLiteral("tables") : QStringLiteral("images");
}

QString Documents() {
    const QString docs = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(docs).isDir() ? docs : QDir::homePath();
}

// A folder worth opening: still there, and not the program's own.
bool Usable(const QString &folder) {
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) return false;
    return QDir(folder).canonicalPath() != QDir(AppDir()).canonicalPath();
}
}  // namespace

QString DesktopSettingsPath() {
    return WritableDir() + QStringLiteral("/Fluxmere-desktop.ini");
}

QString StartFolder(FileKind kind) {
    QString folder;
    if (kind == FileKind::Logs) {
        // LastPath may name a file; the dialog opens in its folder.
        const QString last = QDir::fromNativeSeparators(Options().LastPath.trimmed());
        folder = QFileInfo(last).isFile() ? QFileInfo(last).absolutePath() : last;
    } else {
        folder = DesktopSettings::Read().Value(Section(), Key(kind));
    }
    return Usable(folder) ? folder : Documents();
}

void RememberFolder(FileKind kind, const QString &file) {
    if (kind == FileKind::Logs) {
        Options().LastPath = OptionText(SplitFileName(file, false));
        return;
    }
    // Not being able to note a folder costs only a detour at the next dialog, never data:
    // it is not worth a box in the middle of a save that went well.
    try {
        DesktopSettings settings = DesktopSettings::Read();
        settings.Set(Section(), Key(kind), QFileInfo(file).absolutePath());
        settings.Save();
    } catch (const Fault &) {
    }
}
}  // namespace fm
