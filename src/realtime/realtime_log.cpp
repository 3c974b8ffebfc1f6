#include "realtime/realtime_log.h"

#include "core/app_paths.h"
#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/regional.h"
#include "files/log_recovery.h"
#include "files/sample_text.h"
#include "realtime/live_record.h"

#include <QDir>
#include <QFile>
#include <memory>

namespace fm {
namespace {
QString &PathOverride() {
    static QString path;
    return path;
}

std::unique_ptr<QFile> &LogFile() {
    static std::unique_ptr<QFile> file;
    return file;
}

qint64 g_goodSize = 0;  // the log up to its last line wholly on disk

QByteArray Quoted(const QString &text) {
    return '"' + ToCp1252(text) + "\"\r\n";
}

// Each line reaches the disk before the next sample (a crash keeps what was measured).
// A line that does not get there whole is cut off again, so the count written at the
// close always matches the lines on disk.
void Write(const QByteArray &bytes) {
    QFile *f = LogFile().get();
    if (!f) Raise(err::DeviceIO);
    if (f->write(bytes) == bytes.size() && f->flush()) {
        g_goodSize = f->pos();
        return;
    }
    const QString cause = f->errorString();
    f->unsetError();
    f->resize(g_goodSize);
    f->seek(g_goodSize);
    Raise(err::DeviceIO, cause);
}
}  // namespace

QString RealTimeLogPath() {
    return PathOverride().isEmpty() ? QDir(WritableDir()).filePath(QStringLiteral("RealTime.log"))
                                    : PathOverride();
}

void SetRealTimeLogPath(const QString &path) {
    PathOverride() = path;
}

bool OpenLastLog() {
    return Trap("OpenLastLog", false, [] {
        const QString path = RealTimeLogPath();
        LogFile().reset();
        if (QFile::exists(path) && !QFile::remove(path)) Raise(err::PermissionDenied);
        auto file = std::make_unique<QFile>(path);
        Shared().RealTimeLogFile = 1;
        // Unbuffered: a line that fails leaves nothing behind to be flushed later.
        if (!file->open(QIODevice::WriteOnly | QIODevice::Unbuffered)) Raise(err::PathAccess, file->errorString());
        LogFile() = std::move(file);
        g_goodSize = 0;
        LiveRecord &rt = Live();
        Write(Quoted(QStringLiteral("Field Activity Log")));
        // One step ahead: the first sample arrives one period after the opening.
        // Now() is whole seconds, as line 2 reads back.
        const double start = DateAdd(QStringLiteral("s"), 3, Now());
        Write(Quoted(GeneralDate(start).trimmed()));
        rt.RTStart = start;
        rt.RTStepUnit = QStringLiteral("s");
        rt.RTStep = 3;
        rt.RTSource = QStringLiteral("Real Time");
        Write(Quoted(Str(3) + QStringLiteral("s")));
        rt.RealTimeCountPos = LogFile()->pos() + 1;
        Write(QByteArray(10, ' ') + "\r\n");
        rt.RealTimeLines = 0;
        Write(Quoted(Data().ShortID.trimmed()));
        Write(Quoted(Data().LongID.trimmed()));
        return true;
    });
}

void CloseLastLog() {
    TrapVoid("CloseLastLog", [] {
        LogFile().reset();
        const LiveRecord &rt = Live();
        if (rt.RealTimeCountPos > 0) PatchLogCount(RealTimeLogPath(), rt.RealTimeCountPos - 1, rt.RealTimeLines);
        Shared().RealTimeLogFile = 0;
    });
}

bool AppendLiveLine(float x, float y, float z) {
    return Trap("AppendLiveLine", false, [&] {
        QByteArray line;
        SampleWriter().Append(line, x, y, z);
        Write(line);
        ++Live().RealTimeLines;
        return true;
    });
}
}  // namespace fm
