#include "core/file_access.h"

#include "core/fault.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QFile>
#include <cerrno>
#include <cstring>

namespace fm {
namespace {
// Length of the valid UTF-8 sequence at p, or 0.
int Utf8Length(const uint8_t *p, const uint8_t *end) {
    const uint8_t c = p[0];
    int n = 0;
    uint32_t cp = 0;
    if (c < 0x80) return 1;
    if (c >= 0xC2 && c <= 0xDF)
        n = 2, cp = c & 0x1F;
    else if (c >= 0xE0 && c <= 0xEF)
        n = 3, cp = c & 0x0F;
    else if (c >= 0xF0 && c <= 0xF4)
        n = 4, cp = c & 0x07;
    else
        return 0;
    if (end - p < n) return 0;
    for (int i = 1; i < n; ++i) {
        if ((p[i] & 0xC0) != 0x80) return 0;
        cp = cp << 6 | (p[i] & 0x3F);
    }
    // Overlong forms, surrogates and code points past U+10FFFF are not UTF-8.
    if ((n == 3 && cp < 0x800) || (n == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
        (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    return n;
}

bool Escaped(QChar c, QChar before) {
    return c.unicode() >= 0xDC80 && c.unicode() <= 0xDCFF && !before.isHighSurrogate();
}
}  // namespace

QString NameFromNative(const QByteArray &bytes) {
    QString out;
    const auto *p = reinterpret_cast<const uint8_t *>(bytes.constData());
    const auto *end = p + bytes.size();
    while (p < end) {
        const int n = Utf8Length(p, end);
        if (n == 0) {
            out += QChar(char16_t(0xDC00 + *p++));
            continue;
        }
        out += QString::fromUtf8(reinterpret_cast<const char *>(p), n);
        p += n;
    }
    return out;
}

QByteArray NativeName(const QString &name) {
    QByteArray out;
    qsizetype from = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (!Escaped(name[i], i > 0 ? name[i - 1] : QChar())) continue;
        out += name.mid(from, i - from).toUtf8();
        out += char(name[i].unicode() - 0xDC00);
        from = i + 1;
    }
    return out + name.mid(from).toUtf8();
}

FileKind KindOf(const QString &path) {
    struct stat st {};
    if (::stat(NativeName(path).constData(), &st) != 0) return FileKind::Missing;
    if (S_ISREG(st.st_mode)) return FileKind::Regular;
    return S_ISDIR(st.st_mode) ? FileKind::Folder : FileKind::Other;
}

void OpenForReading(QFile &file, const QString &path) {
    // Non-blocking, so that opening a pipe does not wait for a writer.
    const int fd = ::open(NativeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) RaiseSystem(errno, path);
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        Raise(err::PathAccess,
              QStringLiteral("Not a regular file (a folder, a device or a pipe): %1").arg(path));
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        Raise(err::PathAccess, file.errorString());
    }
}

QString SystemText(int error) {
    switch (error) {
        case ENOSPC:
            return QStringLiteral("No space left on device");
        case EDQUOT:
            return QStringLiteral("Disk quota exceeded");
        case EFBIG:
            return QStringLiteral("File too large");
        case EACCES:
            return QStringLiteral("Permission denied");
        case EPERM:
            return QStringLiteral("Operation not permitted");
        case EROFS:
            return QStringLiteral("Read-only file system");
        case ENOENT:
            return QStringLiteral("No such file or directory");
        case ENOTDIR:
            return QStringLiteral("Not a directory");
        case EISDIR:
            return QStringLiteral("Is a directory");
        case ENAMETOOLONG:
            return QStringLiteral("File name too long");
        case EIO:
            return QStringLiteral("Input/output error");
        default:
            return QString::fromLocal8Bit(std::strerror(error));
    }
}

void RaiseSystem(int error, const QString &path) {
    int number = err::DeviceIO;
    switch (error) {
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            number = err::DiskFull;
            break;
        case EACCES:
        case EPERM:
        case EROFS:
            number = err::PermissionDenied;
            break;
        case ENOENT:
        case ENOTDIR:
            number = err::PathNotFound;
            break;
        case EISDIR:
        case ENAMETOOLONG:
            number = err::PathAccess;
            break;
        default:
            break;
    }
    Raise(number, SystemText(error) + QStringLiteral(": ") + path);
}
}  // namespace fm
