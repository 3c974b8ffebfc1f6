#pragma once
// What the exposure window remembers between runs: the references ticked, the user's own
// reference, the site and the notes. They live in the [Exposure] section of the desktop
// settings, never in the options record, which keeps its fixed layout.
#include "analysis/exposure.h"

#include <QString>
#include <QStringList>

namespace fm {
struct ExposurePrefs {
    QStringList references;  // ids of the built-in references ticked, in their own order
    bool own = false;        // the user's own reference ticked
    QString ownName;
    double ownValue = 0;  // µT; 0 or less is no value
    ExposureBasis ownBasis = ExposureBasis::Maximum;
    QString site, notes;
    bool operator==(const ExposurePrefs &) const = default;
};

// A missing or damaged section gives the defaults, a damaged entry its own default.
ExposurePrefs ReadExposurePrefs();
// Faults reach the caller.
void SaveExposurePrefs(const ExposurePrefs &prefs);
// The references to judge, in the order the window shows them: the built-in ones ticked,
// then the user's own when ticked and with a value.
ExposureChoice ChoiceOf(const ExposurePrefs &prefs);
}  // namespace fm
