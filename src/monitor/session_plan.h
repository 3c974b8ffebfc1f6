#pragma once
// The checks of a new logging session and the session block they lead to, apart from
// the dialog, so that the dialog and the command-line companion program alike.
#include <QString>
#include <optional>

namespace fm {
class StartProgress;

struct SessionRequest {
    QString stepText;  // as typed
    QString unit;      // "s", "n", "h" or "d"; empty when none is chosen
    std::optional<double> start;  // nothing: start at once
    std::optional<double> stop;   // nothing: run to the end of the memory
    // The present moment for the checks and the logger's clock; the computer's when not given.
    std::optional<double> clock;
};

// Checks the request with the dialog's messages, fills MonitorImage, asks for the
// confirmation and starts the session. True when the logger took it.
bool ProgramSession(const SessionRequest &request, StartProgress &progress);
// The logger's code of a unit letter (2 to 5), 0 for none.
int UnitCode(const QString &unit);
} // namespace fm
