#pragma once
// Real-time logs that were never closed (a crash, a power cut, a killed run) keep the
// blanks of their count line, and the loader refuses them. Their complete sample lines
// are on disk all the same: these functions find them and write the count.
#include <QString>
#include <optional>

namespace fm {
// The number of complete sample lines of an unclosed real-time log; nothing for any
// other file, a closed log included.
std::optional<qint64> UnclosedLogLines(const QString &path);

// Drops a half-written last line and writes the count into the reserved line, in place,
// as the closing of a log does. Returns the count written, or nothing (with the fault
// reported) when the file is not an unclosed log or cannot be written.
std::optional<qint64> RecoverLog(const QString &path);

// Writes `count` with its sign position at byte `pos` (from 0) of an existing log, in
// place and synced: the reserved blanks stay behind it.
void PatchLogCount(const QString &path, qint64 pos, qint64 count);
} // namespace fm
