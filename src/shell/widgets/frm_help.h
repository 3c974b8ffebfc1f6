#pragma once
// The user guide: the help bundle of the language in use, in a browser window.
#include <QString>

class QWidget;

namespace fm {
inline constexpr int HELP_INDEX = 3;
inline constexpr int HELP_FINDER = 11;
// Opens the bundle at `helpFile` on its contents (HELP_FINDER) or index (HELP_INDEX) page.
bool WinHelp(QWidget *parent, const QString &helpFile, int command);
} // namespace fm
