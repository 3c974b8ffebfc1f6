#pragma once
// The one way the program writes a user's file. The content goes to a temporary file
// beside the target (".<name>.fluxmere-tmp-XXXXXX"), is checked, synced, and only then
// renamed over the target: a failure at any point leaves the old file as it was and no
// temporary file behind. The new file keeps the mode bits of the one it replaces; a file
// the user may not write is refused, not replaced through the folder's rights; and a
// temporary file that a killed run left for the same name is removed by the next save.
// (QSaveFile takes a short write for a full one, and replaces read-only files.)
#include <QByteArray>
#include <QString>
#include <functional>

class QIODevice;

namespace fm {
class SafeFile {
public:
    explicit SafeFile(const QString &path);
    ~SafeFile();
    SafeFile(const SafeFile &) = delete;
    SafeFile &operator=(const SafeFile &) = delete;
    // Each raises a fault that names the cause.
    void Open();
    void Write(const QByteArray &bytes);
    // For writers that fill a buffer: writes and empties it once it holds a megabyte.
    void Spill(QByteArray &buffer) {
        if (buffer.size() < (1 << 20)) return;
        Write(buffer);
        buffer.resize(0);  // keeps its room for the next megabyte
    }
    void Commit();

    // The whole content at once.
    static void Save(const QString &path, const QByteArray &bytes);
    // For writers that need a device (images, PDF, SVG): they draw into memory, and the
    // bytes reach the file only when `draw` reported success.
    static void Render(const QString &path, const std::function<bool(QIODevice &)> &draw);
    // Whether a file can be made in `dir`, tried with a probe that is removed at once.
    static bool CanCreateIn(const QString &dir);
    // The start of the temporary files' names for `path`, six characters follow.
    static QByteArray TempPrefix(const QByteArray &nativePath);

private:
    [[noreturn]] void Fail(int error);
    void Discard();
    QString path_;
    QByteArray native_, temp_;
    int fd_ = -1;
    qint64 written_ = 0;
    bool existed_ = false;
    unsigned mode_ = 0, uid_ = 0, gid_ = 0;
};
}  // namespace fm
