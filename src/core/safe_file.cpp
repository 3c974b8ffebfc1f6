#include "core/safe_file.h"

#include "core/fault.h"

#include <QFileInfo>
#include <QTemporaryFile>
#include <cstdio>
#include <unistd.h>

namespace fm {

SafeFile::SafeFile(const QString &path) : path_(path) {}
SafeFile::~SafeFile() = default;

void SafeFile::Open() {
    const QFileInfo target(path_);
    if (target.isDir()) Raise(err::PathAccess, QStringLiteral("%1 is a folder").arg(path_));
    temp_ = std::make_unique<QTemporaryFile>(target.absolutePath() + QStringLiteral("/.") + target.fileName() +
                                             QStringLiteral(".XXXXXX"));
    if (!temp_->open()) Raise(err::PathAccess, temp_->errorString());
    written_ = 0;
}

void SafeFile::Write(const QByteArray &bytes) {
    if (temp_->write(bytes) != bytes.size()) Raise(err::DeviceIO, temp_->errorString());
    written_ += bytes.size();
}

void SafeFile::Commit() {
    if (!temp_->flush()) Raise(err::DeviceIO, temp_->errorString());
    // A short write can pass unreported: the size on disk is the proof.
    if (QFileInfo(temp_->fileName()).size() != written_ || temp_->size() != written_)
        Raise(61, QStringLiteral("Disk full or file too large: %1").arg(path_));
    if (::fsync(temp_->handle()) != 0) Raise(err::DeviceIO, QStringLiteral("Cannot sync %1").arg(path_));
    // Permissions of the file it replaces, else those of a new file.
    const QFileInfo old(path_);
    temp_->setPermissions(old.exists() ? old.permissions()
                                       : QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                                             QFileDevice::ReadOther);
    temp_->close();
    if (std::rename(QFile::encodeName(temp_->fileName()).constData(), QFile::encodeName(path_).constData()) != 0)
        Raise(err::PathAccess, QStringLiteral("Cannot replace %1").arg(path_));
    temp_->setAutoRemove(false);
}

} // namespace fm
