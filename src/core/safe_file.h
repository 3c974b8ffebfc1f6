#pragma once
// Replaces a file only once its new content is wholly on disk: the content goes to a
// temporary file beside the target, its size is checked, it is synced, and only then
// renamed over the target. A failure at any point leaves the old file as it was.
// (QSaveFile takes a short write for a full one, so it is not enough.)
#include <QByteArray>
#include <QString>
#include <memory>

class QTemporaryFile;

namespace fm {
class SafeFile {
public:
    explicit SafeFile(const QString &path);
    ~SafeFile();
    // Each raises a fault on failure.
    void Open();
    void Write(const QByteArray &bytes);
    // For writers that fill a buffer: writes and empties it once it holds a megabyte.
    void Spill(QByteArray &buffer) {
        if (buffer.size() < (1 << 20)) return;
        Write(buffer);
        buffer.resize(0);  // keeps its room for the next megabyte
    }
    void Commit();

private:
    QString path_;
    std::unique_ptr<QTemporaryFile> temp_;
    qint64 written_ = 0;
};
} // namespace fm
