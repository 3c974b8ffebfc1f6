#pragma once
// The command line carried out: it loads files, so it sits above the file formats.
#include <QString>
#include <functional>

namespace fm {
// Carries out "-L file" pairs, or loads each token as a file when none is an option
// (the form desktop launchers use); `loaded` runs after each file that loaded.
void GestioneCommandLine(const QString &tail, const std::function<void()> &loaded);
}  // namespace fm
