#include "realtime/realtime_log.h"

#include "core/app_paths.h"
#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/regional.h"
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

QByteArray Quoted(const QString &text) {
    return '"' + ToCp1252(text) + "\"\r\n";
}

void Write(const QByteArray &bytes) {
    QFile *f = LogFile().get();
    if (!f || f->write(bytes) != bytes.size()) Raise(err::DeviceIO, f ? f->errorString() : QString());
    f->flush();  // a crash keeps what was measured so far
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
        if (!file->open(QIODevice::WriteOnly)) Raise(err::PathAccess, file->errorString());
        LogFile() = std::move(file);
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
        if (rt.RealTimeCountPos > 0) {
            QFile f(RealTimeLogPath());
            if (!f.open(QIODevice::ReadWrite) || !f.seek(rt.RealTimeCountPos - 1))
                Raise(err::PathAccess, f.errorString());
            const QByteArray count = Str(rt.RealTimeLines).toLatin1();
            if (f.write(count) != count.size()) Raise(err::DeviceIO, f.errorString());
        }
        Shared().RealTimeLogFile = 0;
    });
}

void AppendLiveLine(float x, float y, float z) {
    QByteArray line;
    SampleWriter().Append(line, x, y, z);
    Write(line);
    ++Live().RealTimeLines;
}
}  // namespace fm
