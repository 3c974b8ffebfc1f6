#include "support/test_env.h"

#include "analysis/warnings.h"
#include "core/app_paths.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"

#include <QFile>
#include <csignal>
#include <sys/resource.h>

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

} // namespace fm::test
