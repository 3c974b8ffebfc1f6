#include "core/app_paths.h"

#include "core/safe_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace fm {
namespace {
QString g_appDir, g_writableDir;

bool CanWriteIn(const QString &dir) {
    return SafeFile::CanCreateIn(dir);
}
} // namespace

QString AppDir() {
    if (!g_appDir.isEmpty()) return g_appDir;
    if (QCoreApplication::instance()) return QCoreApplication::applicationDirPath();
    return QDir::currentPath();
}

QString DataDir() {
    const QString app = AppDir();
    if (QFileInfo::exists(app + QStringLiteral("/Language.dll"))) return app;
    const QString shared = QDir::cleanPath(app + QStringLiteral("/../share/fluxmere"));
    if (QFileInfo::exists(shared + QStringLiteral("/Language.dll"))) return shared;
    return app;
}

QString WritableDir() {
    if (!g_writableDir.isEmpty()) return g_writableDir;
    const QString app = AppDir();
    if (CanWriteIn(app)) {
        g_writableDir = app;
    } else {
        // Named after the product, not the running program: the window and fluxmere-cli
        // must find the same options.
        QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        if (base.isEmpty()) base = QDir::homePath() + QStringLiteral("/.config");
        const QString dir = base + QStringLiteral("/Fluxmere");
        QDir().mkpath(dir);
        g_writableDir = dir;
    }
    return g_writableDir;
}

QString OptionsPath() { return WritableDir() + QStringLiteral("/Fluxmere.ini"); }

void SetWritableDir(const QString &dir) { g_writableDir = dir; }
void SetAppDir(const QString &dir) { g_appDir = dir; }
} // namespace fm
