#pragma once
// The commands of fluxmere-cli. Each returns the process's exit status.
#include <QStringList>

namespace fm::cli {
inline constexpr int kOk = 0, kFailed = 1, kNoLanguage = 2, kUsage = 64;

int Info(const QString &file, bool json);
int Convert(const QString &in, const QString &out);
int Export(const QString &in, bool csv, const QString &out);
int List(const QString &in, bool byValue);
int Status(const QString &port);
int ReadCodes(const QString &port);
int WriteCodes(const QString &port, const QString &shortId, const QString &longId);
int Program(const QString &port, const QString &step, const QString &unit, const QString &start,
            const QString &stop, const QString &clock);
int Stop(const QString &port);
int Upload(const QString &port, const QString &out);
}  // namespace fm::cli
