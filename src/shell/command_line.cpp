#include "shell/command_line.h"

#include "core/fault.h"
#include "core/host.h"
#include "core/startup.h"
#include "files/log_file.h"

#include <algorithm>

namespace fm {

namespace {
QString Unquoted(QString name) {
    if (name.startsWith(QLatin1Char('"'))) name.remove(0, 1);
    if (name.endsWith(QLatin1Char('"'))) name.chop(1);
    return name;
}
}  // namespace

void GestioneCommandLine(const QString &tail, const std::function<void()> &loaded) {
    TrapVoid("GestioneCommandLine", [&] {
        const QStringList tokens = CutCommandTail(tail);
        // Desktop launchers pass bare file names ("Fluxmere FILE..."): with no option
        // among the tokens, each one is a file.
        const bool bare = std::none_of(tokens.begin(), tokens.end(),
                                       [](const QString &t) { return t.startsWith(QLatin1Char('-')); });
        if (bare) {
            for (const QString &t : tokens)
                if (LoadFile(Unquoted(t)) && loaded) loaded();
            return;
        }
        for (int i = 0; i + 1 < tokens.size(); i += 2) {
            if (tokens[i] != QLatin1String("-L")) {
                Host().SystemBox(QStringLiteral("Parametro sconosciuto in riga di comando"),
                                 QStringLiteral("Fluxmere"), SystemBoxKind::PlainOk);
                return;
            }
            if (LoadFile(Unquoted(tokens[i + 1])) && loaded) loaded();
        }
    });
}

}  // namespace fm
