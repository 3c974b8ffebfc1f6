#include "shell/file_folders.h"

#include "core/app_paths.h"
#include "core/fault.h"
#include "core/options.h"
#include "core/safe_file.h"
#include "files/file_names.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStandardPaths>

namespace fm {
namespace {
const char *const kSection = "[Folders]";

QString Key(FileKind kind) {
    return kind == FileKind::Tables ? QStringLiteral("tables") : QStringLiteral("images");
}

// key=value lines under [Folders]; the value runs to the end of its line as it stands.
QMap<QString, QString> ReadFolders() {
    QMap<QString, QString> folders;
    QFile f(DesktopSettingsPath());
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return folders;
    bool inSection = false;
    for (const QString &line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1Char('['))) {
            inSection = line.trimmed() == QLatin1String(kSection);
            continue;
        }
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (inSection && eq > 0) folders.insert(line.left(eq).trimmed(), line.mid(eq + 1));
    }
    return folders;
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
        folder = ReadFolders().value(Key(kind));
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
        QMap<QString, QString> folders = ReadFolders();
        folders.insert(Key(kind), QFileInfo(file).absolutePath());
        QByteArray text = QByteArray(kSection) + '\n';
        for (auto it = folders.cbegin(); it != folders.cend(); ++it)
            text += (it.key() + QLatin1Char('=') + it.value()).toUtf8() + '\n';
        SafeFile out(DesktopSettingsPath());
        out.Open();
        out.Write(text);
        out.Commit();
    } catch (const Fault &) {
    }
}
}  // namespace fm
