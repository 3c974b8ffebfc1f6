#pragma once
// Where the application's files lie. The executable's own files (language store,
// help bundles) lie beside it in the build tree, or in ../share/fluxmere once
// installed; the files it writes (options, real-time log) lie beside the executable
// when that folder is writable, else in the per-user folders of the platform.
#include <QString>

namespace fm {
QString AppDir();  // the folder of the executable, without a trailing separator
// The folder of the language store and the help bundles: AppDir() when they lie there,
// else AppDir()/../share/fluxmere when that holds them, else AppDir().
QString DataDir();
// The folder for the options file and the real-time log.
QString WritableDir();
QString OptionsPath();  // WritableDir()/Fluxmere.ini
// For tests and tools: puts the files the application writes in another folder.
void SetWritableDir(const QString &dir);
void SetAppDir(const QString &dir);
} // namespace fm
