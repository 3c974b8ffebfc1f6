#include "shell/exposure_prefs.h"

#include "core/language.h"
#include "core/regional.h"
#include "shell/desktop_settings.h"

#include <cmath>

namespace fm {
namespace {
QString Section() {
    return QStringLiteral("Exposure");
}
}  // namespace

ExposurePrefs ReadExposurePrefs() {
    const DesktopSettings s = DesktopSettings::Read();
    ExposurePrefs p;
    // The Italian quality objective and attention value, and the EU reference level: what
    // a site near a power line is held against first.
    p.references =
        QStringList{QStringLiteral("it-quality"), QStringLiteral("it-attention"), QStringLiteral("eu-1999")};
    const auto value = [&](const char *key) { return s.Value(Section(), QLatin1String(key)); };
    if (s.Has(Section(), QStringLiteral("references"))) {
        p.references.clear();
        const QStringList ids = value("references").split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const ExposureReference &r : BuiltInReferences())
            if (ids.contains(r.id)) p.references << r.id;
    }
    p.own = value("own").trimmed() == QLatin1String("1");
    p.ownName = UnescapeLine(value("own.name"));
    const double v = Val(value("own.value"));
    p.ownValue = std::isfinite(v) && v > 0 ? v : 0;
    p.ownBasis = value("own.basis").trimmed() == BasisId(ExposureBasis::DailyMedian)
                     ? ExposureBasis::DailyMedian
                     : ExposureBasis::Maximum;
    p.site = UnescapeLine(value("site"));
    p.notes = UnescapeLine(value("notes"));
    return p;
}

void SaveExposurePrefs(const ExposurePrefs &p) {
    DesktopSettings s = DesktopSettings::Read();
    const auto set = [&](const char *key, const QString &text) {
        s.Set(Section(), QLatin1String(key), text);
    };
    set("references", p.references.join(QLatin1Char(',')));
    set("own", p.own ? QStringLiteral("1") : QStringLiteral("0"));
    set("own.name", EscapeLine(p.ownName));
    set("own.value", p.ownValue > 0 ? Str(p.ownValue).trimmed() : QString());
    set("own.basis", BasisId(p.ownBasis));
    set("site", EscapeLine(p.site));
    set("notes", EscapeLine(p.notes));
    s.Save();
}

ExposureChoice ChoiceOf(const ExposurePrefs &p) {
    ExposureChoice c{p.site, p.notes, {}};
    for (const ExposureReference &r : BuiltInReferences())
        if (p.references.contains(r.id)) c.references.push_back(r);
    if (p.own && p.ownValue > 0) {
        const QString name = p.ownName.trimmed().isEmpty() ? ResString(4493) : p.ownName.trimmed();
        c.references.push_back(CustomReference(name, p.ownValue, p.ownBasis));
    }
    return c;
}
}  // namespace fm
