#include "acquisition/surveyor.h"
#include "commands.h"
#include "core/data_set.h"
#include "core/host.h"
#include "core/language.h"
#include "files/log_file.h"
#include "link/serial_port.h"
#include "link/supervision.h"

#include <cstdio>

namespace fm::cli {

// The unit speaks its own protocol: the port is opened, but the logger's link is not
// brought up on it.
int ImportSurveyor(const QString &port, const QString &out) {
    Seriale().SetDeviceOverride(port);
    if (!SelectPort(0) || !DownloadSurveyorData()) return kFailed;
    // With no blocks the import ends well, but a fresh process then has nothing to save.
    if (!Data().DataPresent || Data().DataSource != QLatin1String("Surveyor") || Data().DataCount < 1) {
        std::fprintf(stderr, "fluxmere-cli: the Surveyor unit gave no data; %s was not written\n",
                     qPrintable(out));
        return kFailed;
    }
    std::fputs(qPrintable(ResString(4031) + QStringLiteral(": ") + QString::number(Data().DataCount) +
                          QLatin1Char('\n')),
               stdout);
    return SaveFile(out) ? kOk : kFailed;
}

}  // namespace fm::cli
