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

QString WritableDir() {
    if (!g_writableDir.isEmpty()) return g_writableDir;
    const QString app = AppDir();
    if (CanWriteIn(app)) {
        g_writableDir = app;
    } else {
        QString dir = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
        if (dir.isEmpty()) dir = QDir::homePath() + QStringLiteral("/.config/Fluxmere");
        QDir().mkpath(dir);
        g_writableDir = dir;
    }
    return g_writableDir;
}

QString OptionsPath() { return WritableDir() + QStringLiteral("/Fluxmere.ini"); }

void SetWritableDir(const QString &dir) { g_writableDir = dir; }
void SetAppDir(const QString &dir) { g_appDir = dir; }
} // namespace fm
