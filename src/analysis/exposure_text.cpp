#include "analysis/exposure_text.h"

#include "core/language.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

namespace fm {
QString ExposureReferenceName(const ExposureReference &reference) {
    const auto builtIn = BuiltInReferences();
    const QStringList names = ResString(4469).split(QLatin1Char('|'));
    for (size_t k = 0; k < builtIn.size(); ++k)
        if (builtIn[k].id == reference.id && qsizetype(k) < names.size()) return names[qsizetype(k)];
    return reference.name;
}

QString ExposureBasisText(ExposureBasis basis) {
    return ResString(basis == ExposureBasis::DailyMedian ? 4461 : 4462);
}

QString ExposureVerdictText(Verdict verdict) {
    return ResString(verdict == Verdict::Met ? 4463 : verdict == Verdict::Exceeded ? 4464 : 4458);
}

QString ExposureDuration(double seconds) {
    const int64_t s = std::llround(std::max(0.0, seconds));
    const int64_t h = s / 3600, m = s / 60 % 60, r = s % 60;
    const auto two = [](int64_t v) { return QString::number(v).rightJustified(2, QLatin1Char('0')); };
    if (h > 0) return QStringLiteral("%1 h %2 min %3 s").arg(QString::number(h), two(m), two(r));
    if (m > 0) return QStringLiteral("%1 min %2 s").arg(QString::number(m), two(r));
    return QStringLiteral("%1 s").arg(r);
}
}  // namespace fm
