#include "core/host.h"
#include "core/language.h"
#include "files/log_file.h"

namespace fm {
// "File Centralina" files are not read yet: such a file is refused like any file
// that is not a log, and the data set stays as it was.
bool OpenCsv(const QString &) {
    Host().MessBox(ResString(22), {}, -1, -1);
    return false;
}
} // namespace fm
