#pragma once
// File names as the system keeps them, and opening a file for reading.
// A name is bytes: one that is not valid UTF-8 keeps each stray byte as the code unit
// U+DC80 + byte (as Python's "surrogateescape"), so it goes back to the same bytes.
// Qt's own conversion turns such a byte into U+FFFD and the file can no longer be found.
#include <QByteArray>
#include <QString>

class QFile;

namespace fm {
QString NameFromNative(const QByteArray &bytes);
QByteArray NativeName(const QString &name);

enum class FileKind { Missing, Regular, Folder, Other };
// What the name stands for, following links; "Other" is a pipe, a device or a socket.
FileKind KindOf(const QString &path);
inline bool FileExists(const QString &path) {
    return KindOf(path) != FileKind::Missing;
}

// Opens a regular file for reading under its real bytes. A pipe or a device is refused
// without waiting for a writer on its other end. Raises a fault that names the cause.
void OpenForReading(QFile &file, const QString &path);

// The fault for a failed system call on `path`, from its errno: a full disk is
// "Disk full" with "No space left on device", a refused write "Permission denied".
[[noreturn]] void RaiseSystem(int error, const QString &path);
// The cause in the system's words, in English whatever the locale.
QString SystemText(int error);
}  // namespace fm
