#pragma once
// Where each file dialog opens: in the folder used last for that kind of file, else in
// the user's documents, never in the program's own folder. Logs keep theirs in the
// options record (LastPath); tables and images in a small file beside the options,
// "Fluxmere-desktop.ini", so that the record stays as it is.
#include <QString>

namespace fm {
enum class FileKind { Logs, Tables, Images };

QString StartFolder(FileKind kind);
// Notes the folder of `file` for dialogs of that kind to come.
void RememberFolder(FileKind kind, const QString &file);
QString DesktopSettingsPath();  // beside the options file
}  // namespace fm
