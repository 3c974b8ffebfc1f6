#include "files/log_recovery.h"

#include "core/fault.h"
#include "core/file_access.h"
#include "core/regional.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace fm {
namespace {
constexpr qint64 kReserved = 10;  // blanks of the count line

struct Layout {
    qint64 countPos = -1;  // first byte of line 4
    qint64 lines = 0;      // complete sample lines
    qint64 goodSize = 0;   // the file up to the end of the last complete line
};

// Lines 1 to 6 as the live log writes them, line 4 still blank; then the sample lines.
std::optional<Layout> Scan(QFile &f) {
    Layout l;
    int line = 0;
    qint64 pos = 0;
    QByteArray chunk;
    QByteArray head;  // the first four lines, enough to recognise the file
    while (!(chunk = f.read(1 << 20)).isEmpty()) {
        const char *b = chunk.constData();
        for (qsizetype i = 0; i < chunk.size(); ++i) {
            if (line < 4) head.append(b[i]);
            if (b[i] != '\n') continue;
            ++line;
            if (line == 3) l.countPos = pos + i + 1;
            if (line == 4) {
                const QByteArray first = head.left(head.indexOf('\n') + 1);
                const QByteArray count = head.mid(qsizetype(l.countPos), kReserved + 2);
                if (first != "\"Field Activity Log\"\r\n" || count != QByteArray(kReserved, ' ') + "\r\n")
                    return std::nullopt;
            }
            if (line >= 7) ++l.lines;
            if (line >= 6) l.goodSize = pos + i + 1;
        }
        if (line < 4 && head.size() > 4096) return std::nullopt;  // no log heading
        pos += chunk.size();
    }
    if (line < 6) return std::nullopt;
    return l;
}

// Opened under the name's real bytes, for the count written in place.
void OpenInPlace(QFile &f, const QString &path) {
    const int fd = ::open(NativeName(path).constData(), O_RDWR | O_CLOEXEC);
    if (fd < 0) RaiseSystem(errno, path);
    if (!f.open(fd, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        Raise(err::PathAccess, f.errorString());
    }
}

std::optional<Layout> ScanFile(const QString &path) {
    if (KindOf(path) != FileKind::Regular) return std::nullopt;
    QFile f;
    try {
        OpenForReading(f, path);
    } catch (const Fault &) {
        return std::nullopt;  // the loader reports why it cannot be read
    }
    return Scan(f);
}
} // namespace

std::optional<qint64> UnclosedLogLines(const QString &path) {
    const auto l = ScanFile(path);
    if (!l) return std::nullopt;
    return l->lines;
}

void PatchLogCount(const QString &path, qint64 pos, qint64 count) {
    QFile f;
    OpenInPlace(f, path);
    if (!f.seek(pos)) Raise(err::PathAccess, f.errorString());
    const QByteArray text = Str(int64_t(count)).toLatin1();
    if (text.size() > kReserved) Raise(err::Overflow);
    if (f.write(text) != text.size() || !f.flush()) Raise(err::DeviceIO, f.errorString());
    if (::fsync(f.handle()) != 0) Raise(err::DeviceIO, f.errorString());
}

std::optional<qint64> RecoverLog(const QString &path) {
    return Trap("RecoverLog", std::optional<qint64>{}, [&]() -> std::optional<qint64> {
        const auto l = ScanFile(path);
        if (!l) Raise(err::InvalidCall, path);
        QFile f;
        OpenInPlace(f, path);
        // A half-written last line is dropped, never guessed.
        if (f.size() > l->goodSize && !f.resize(l->goodSize)) Raise(err::DeviceIO, f.errorString());
        f.close();
        PatchLogCount(path, l->countPos, l->lines);
        return l->lines;
    });
}
} // namespace fm
