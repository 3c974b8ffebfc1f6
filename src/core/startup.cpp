#include "core/startup.h"

#include "core/app_paths.h"
#include "core/fault.h"
#include "core/host.h"

#include <QFile>

namespace fm {

bool CheckIntegrity() {
    return Trap("CheckIntegrity", false, [] {
        const std::pair<const char *, const char *> required[] = {
            {"Fluxmere_it.hlp", "Italian Help File Not Found"},
            {"Fluxmere_en.hlp", "English Help Not Found"},
            {"Language.dll", "Language DLL Not Found"},
        };
        for (const auto &[file, message] : required) {
            if (!QFile::exists(DataDir() + QLatin1Char('/') + QLatin1String(file))) {
                Host().SystemBox(QString::fromLatin1(message), QStringLiteral("ERROR"), SystemBoxKind::CriticalOk);
                return false;
            }
        }
        return true;
    });
}

QString CommandTail(const QStringList &arguments) {
    QStringList parts;
    for (const QString &a : arguments) {
        const bool blanks = a.contains(QLatin1Char(' ')) || a.contains(QLatin1Char('\t'));
        parts << (blanks ? QLatin1Char('"') + a + QLatin1Char('"') : a);
    }
    return parts.join(QLatin1Char(' '));
}

QStringList CutCommandTail(const QString &tail) {
    QStringList tokens;
    bool open = false, quoted = false;
    for (const QChar c : tail) {
        const bool blank = c == QLatin1Char(' ') || c == QLatin1Char('\t');
        if (blank && !quoted) {
            open = false;
            continue;
        }
        if (!open) {
            if (tokens.size() == 10) break;
            tokens << QString();
            open = true;
        }
        tokens.last() += c;
        if (c == QLatin1Char('"')) quoted = !quoted;
    }
    return tokens;
}

} // namespace fm
