#include "core/safe_file.h"

#include "core/fault.h"
#include "core/file_access.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QBuffer>
#include <cerrno>
#include <cstdio>

namespace fm {
namespace {
constexpr char kTempMark[] = ".fluxmere-tmp-";
constexpr int kRandom = 6;  // the XXXXXX of mkstemp
// Room for the mark in a name of at most 255 bytes.
constexpr qsizetype kNameRoom = 255 - 1 - qsizetype(sizeof kTempMark - 1) - kRandom;

QByteArray Folder(const QByteArray &path) {
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0) return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

QByteArray Base(const QByteArray &path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

// Temporary files of the same target left by a run that was killed before its rename.
void RemoveStale(const QByteArray &prefix) {
    const QByteArray folder = Folder(prefix), start = Base(prefix);
    DIR *dir = ::opendir(folder.constData());
    if (!dir) return;
    while (const dirent *e = ::readdir(dir)) {
        const QByteArray name(e->d_name);
        if (name.size() == start.size() + kRandom && name.startsWith(start))
            ::unlinkat(::dirfd(dir), e->d_name, 0);
    }
    ::closedir(dir);
}

mode_t NewFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}
}  // namespace

SafeFile::SafeFile(const QString &path) : path_(path) {}

SafeFile::~SafeFile() {
    Discard();
}

QByteArray SafeFile::TempPrefix(const QByteArray &nativePath) {
    const QByteArray folder = Folder(nativePath);
    return (folder == "/" ? QByteArray() : folder) + "/." + Base(nativePath).left(kNameRoom) + kTempMark;
}

void SafeFile::Discard() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!temp_.isEmpty()) ::unlink(temp_.constData());
    temp_.clear();
}

void SafeFile::Fail(int error) {
    Discard();
    RaiseSystem(error, path_);
}

void SafeFile::Open() {
    Discard();
    native_ = NativeName(path_);
    // A link is followed: the file it points to is replaced, the link stays.
    if (char *real = ::realpath(native_.constData(), nullptr)) {
        native_ = real;
        std::free(real);
    }
    struct stat st {};
    existed_ = ::stat(native_.constData(), &st) == 0;
    if (existed_) {
        if (S_ISDIR(st.st_mode)) RaiseSystem(EISDIR, path_);
        if (!S_ISREG(st.st_mode))
            Raise(err::PathAccess, QStringLiteral("Not a regular file (a device or a pipe): %1").arg(path_));
        // The rename needs only the folder's rights: the file's own are asked here.
        if (::access(native_.constData(), W_OK) != 0) RaiseSystem(errno, path_);
        mode_ = st.st_mode & 07777;
        uid_ = st.st_uid;
        gid_ = st.st_gid;
    }
    const QByteArray prefix = TempPrefix(native_);
    RemoveStale(prefix);
    temp_ = prefix + QByteArray(kRandom, 'X');
    fd_ = ::mkostemp(temp_.data(), O_CLOEXEC);
    if (fd_ < 0) {
        const int error = errno;
        temp_.clear();
        Fail(error);
    }
    written_ = 0;
}

void SafeFile::Write(const QByteArray &bytes) {
    const char *p = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd_, p, size_t(left));
        if (n < 0 && errno == EINTR) continue;
        // A short write is followed by one that tells why (a full disk, a size limit).
        if (n <= 0) Fail(n < 0 ? errno : ENOSPC);
        p += n;
        left -= n;
        written_ += n;
    }
}

void SafeFile::Commit() {
    // The size on disk is the proof that nothing was lost on the way.
    struct stat st {};
    if (::fstat(fd_, &st) != 0) Fail(errno);
    if (st.st_size != written_) Fail(ENOSPC);
    if (::fchmod(fd_, existed_ ? mode_ : NewFileMode()) != 0) Fail(errno);
    // Replacing someone else's file as root keeps its owner; anyone else cannot, and need not.
    if (existed_ && (st.st_uid != uid_ || st.st_gid != gid_)) (void)!::fchown(fd_, uid_, gid_);
    if (::fsync(fd_) != 0) Fail(errno);
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) Fail(errno);
    if (std::rename(temp_.constData(), native_.constData()) != 0) Fail(errno);
    temp_.clear();
    // The rename itself reaches the disk with the folder.
    const int dir = ::open(Folder(native_).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
}

void SafeFile::Save(const QString &path, const QByteArray &bytes) {
    SafeFile file(path);
    file.Open();
    file.Write(bytes);
    file.Commit();
}

bool SafeFile::CanCreateIn(const QString &dir) {
    QByteArray probe = NativeName(dir) + "/.fluxmere-probe-XXXXXX";
    const int fd = ::mkostemp(probe.data(), O_CLOEXEC);
    if (fd < 0) return false;
    ::close(fd);
    ::unlink(probe.constData());
    return true;
}

void SafeFile::Render(const QString &path, const std::function<bool(QIODevice &)> &draw) {
    QByteArray bytes;
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        if (!draw(buffer) || bytes.isEmpty())
            Raise(err::DeviceIO, QStringLiteral("The picture could not be drawn: %1").arg(path));
    }
    Save(path, bytes);
}
}  // namespace fm
