#include "support/test_env.h"

#include "analysis/warnings.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cmath>
#include <csignal>

namespace fm::test {

Fresh::Fresh(int language) {
    Data() = MeasurementData{};
    InitVariabili();
    Warnings().clear();
    SetWritableDir(dir_.path());
    Options() = OptionsRecord::Defaults();
    InitLibrary(QStringLiteral("Language.dll"));
    SetLanguage(language);
}

Fresh::~Fresh() {
    FreeResLibrary();
    SetWritableDir(QString());
}

QString Fresh::Write(const QString &name, const QByteArray &bytes) const {
    WriteBytes(Path(name), bytes);
    return Path(name);
}

ScopedLocale::ScopedLocale(const QString &name) : previous_(QLocale()) {
    QLocale::setDefault(QLocale(name));
    RegionalChanged();
}

ScopedLocale::~ScopedLocale() {
    QLocale::setDefault(previous_);
    RegionalChanged();
}

FileSizeLimit::FileSizeLimit(long long bytes) {
    std::signal(SIGXFSZ, SIG_IGN);  // the write then fails with EFBIG instead
    rlimit r{};
    getrlimit(RLIMIT_FSIZE, &r);
    previous_ = (long long)r.rlim_cur;
    r.rlim_cur = rlim_t(bytes);
    setrlimit(RLIMIT_FSIZE, &r);
}

FileSizeLimit::~FileSizeLimit() {
    rlimit r{};
    getrlimit(RLIMIT_FSIZE, &r);
    r.rlim_cur = rlim_t(previous_);
    setrlimit(RLIMIT_FSIZE, &r);
}

int AsUnprivileged(const std::function<int()> &body) {
    if (::geteuid() != 0) return body();
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(255);
        ::_exit(body() & 0x7F);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status) == 255 ? -1 : WEXITSTATUS(status);
}

void WriteBytes(const QString &path, const QByteArray &bytes) {
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) f.write(bytes);
}

QByteArray ReadBytes(const QString &path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QByteArray LogText(const QStringList &lines) {
    QByteArray out;
    for (const QString &l : lines) out += '"' + l.toLatin1() + "\"\r\n";
    return out;
}

void WriteDayLog(const QString &path, int samples, int gap) {
    QStringList lines{"Field Activity Log",
                      "14/10/2026 08:00:00@15/10/2026 08:00:00@3",
                      "10n",
                      QString::number(samples),
                      "ID",
                      "Cabina"};
    for (int i = 0; i < samples; ++i) {
        if (i == gap) {
            lines << QStringLiteral("-1 -1 -1 0");
            continue;
        }
        const double v = 0.3 + 0.25 * std::sin(i / 20.0);
        lines << QStringLiteral("%1 %2 %3  0")
                     .arg(v * 0.8, 0, 'f', 2)
                     .arg(v * 0.5, 0, 'f', 2)
                     .arg(v * 0.3, 0, 'f', 2);
    }
    WriteBytes(path, LogText(lines));
}

void SetOneSample(float x, float y, float z, double value) {
    MeasurementData &d = Data();
    d.DataPresent = true;
    d.DataStart = DateFromParts(2026, 3, 1, 10, 0, 0);
    d.DataStep = 5;
    d.DataStepUnit = QStringLiteral("s");
    d.SizeArrays(1);
    d.DataCount = 1;
    d.DataX[1] = x;
    d.DataY[1] = y;
    d.DataZ[1] = z;
    d.DataValue[1] = value;
}

int LinkPtyAsCom1(const QString &dir) {
    const int fd = posix_openpt(O_RDWR | O_NOCTTY);
    if (fd < 0) return -1;
    if (grantpt(fd) != 0 || unlockpt(fd) != 0 ||
        !QFile::link(QString::fromLocal8Bit(ptsname(fd)), QDir(dir).filePath(QStringLiteral("com1")))) {
        ::close(fd);
        return -1;
    }
    return fd;
}

QByteArray FiveSampleLog() {
    return LogText({"Field Activity Log", "14/10/2026 08:00:00@14/10/2026 08:05:00@3", "1n", "5", "QL540-0042",
                    "Cabina 3", "0.10 0.20 0.30  0", "0.50 0.50 0.50  0", "-1 -1 -1 0", "1.00 0.00 0.00  0",
                    "0.20 0.20 0.20  0"});
}

QByteArray CrashedLiveLog() {
    return "\"Field Activity Log\"\r\n\"14/10/2026 08:00:00\"\r\n\" 3s\"\r\n          \r\n"
           "\"CAB\"\r\n\"Via Po\"\r\n\"0.10 0.20 0.30  0\"\r\n\"0.40 0.50 0.60  0\"\r\n\"0.7";
}

QString Documents() {
    const QString docs = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(docs).isDir() ? docs : QDir::homePath();
}

bool MonthFirst() {
    const QString f = ShortDateFormat();
    return f.indexOf(QLatin1Char('M')) < f.indexOf(QLatin1Char('d'));
}

QString SampleText(const MeasurementData &d, int i) {
    return QStringLiteral("%1 %2 %3")
        .arg(d.DataX[size_t(i)], 0, 'f', 2)
        .arg(d.DataY[size_t(i)], 0, 'f', 2)
        .arg(d.DataZ[size_t(i)], 0, 'f', 2);
}
}  // namespace fm::test
