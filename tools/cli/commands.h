#pragma once
// The commands of fluxmere-cli. Each returns the process's exit status.
#include <QStringList>

namespace fm::cli {
inline constexpr int kOk = 0, kFailed = 1, kNoLanguage = 2, kUsage = 64;

int Info(const QString &file, bool json);
int Convert(const QString &in, const QString &out);
} // namespace fm::cli
