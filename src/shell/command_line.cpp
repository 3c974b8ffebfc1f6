#include "shell/command_line.h"

#include "core/fault.h"
#include "core/host.h"
#include "core/startup.h"
#include "files/log_file.h"

namespace fm {

void GestioneCommandLine(const QString &tail, const std::function<void()> &loaded) {
    TrapVoid("GestioneCommandLine", [&] {
        const QStringList tokens = CutCommandTail(tail);
        for (int i = 0; i + 1 < tokens.size(); i += 2) {
            if (tokens[i] != QLatin1String("-L")) {
                Host().SystemBox(QStringLiteral("Parametro sconosciuto in riga di comando"),
                                 QStringLiteral("Fluxmere"), SystemBoxKind::PlainOk);
                return;
            }
            QString name = tokens[i + 1];
            if (name.startsWith(QLatin1Char('"'))) name.remove(0, 1);
            if (name.endsWith(QLatin1Char('"'))) name.chop(1);
            if (LoadFile(name) && loaded) loaded();
        }
    });
}

}  // namespace fm
