#pragma once
// The words of an assessment in the language on show, one set for the window and the
// report, so that the screen and the paper a client gets name things alike.
#include "analysis/exposure.h"

#include <QString>

namespace fm {
// A built-in reference's name with its source; a user's own keeps the name typed.
QString ExposureReferenceName(const ExposureReference &reference);
QString ExposureBasisText(ExposureBasis basis);
QString ExposureVerdictText(Verdict verdict);
// "2 h 05 min 30 s": SI symbols read alike in both languages; hours run past a day.
QString ExposureDuration(double seconds);
}  // namespace fm
