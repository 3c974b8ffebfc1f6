// The exposure report without a printer or a display: the pages of the print road as an
// A4 PDF, judged against the references named on the command line.
#include "command_line.h"
#include "commands.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "files/log_file.h"
#include "printing/widgets/exposure_report.h"

#include <QLocale>
#include <cmath>
#include <cstdio>

namespace fm::cli {
namespace {
QString BuiltInIds() {
    QStringList ids;
    for (const ExposureReference &r : BuiltInReferences()) ids << r.id;
    return ids.join(QStringLiteral(", "));
}

// A built-in id, or NAME=VALUE[:median|:maximum] (the median basis by default). The value
// is in µT, with a point or a comma as decimal mark and no thousands mark, above 0.
std::optional<ExposureReference> ReadReference(const QString &text, QString *problem) {
    if (const ExposureReference *r = FindReference(text.trimmed().toLower())) return *r;
    const qsizetype eq = text.lastIndexOf(QLatin1Char('='));
    if (eq < 0) {
        *problem = QStringLiteral("unknown reference '%1': give one of %2, or NAME=VALUE[:median|:maximum]")
                       .arg(text, BuiltInIds());
        return std::nullopt;
    }
    const QString name = text.left(eq).trimmed();
    QString value = text.mid(eq + 1).trimmed();
    ExposureBasis basis = ExposureBasis::DailyMedian;
    if (const qsizetype colon = value.indexOf(QLatin1Char(':')); colon >= 0) {
        const QString word = value.mid(colon + 1).trimmed().toLower();
        value = value.left(colon).trimmed();
        if (word == QLatin1String("maximum") || word == QLatin1String("max")) {
            basis = ExposureBasis::Maximum;
        } else if (word != QLatin1String("median") && word != QLatin1String("median24h")) {
            *problem = QStringLiteral("reference '%1': the basis is median or maximum, not '%2'").arg(text, word);
            return std::nullopt;
        }
    }
    bool ok = false;
    const double v = QLocale::c().toDouble(QString(value).replace(QLatin1Char(','), QLatin1Char('.')), &ok);
    if (name.isEmpty() || !ok || !(v > 0) || !std::isfinite(v)) {
        *problem = QStringLiteral("reference '%1': NAME=VALUE needs a name and a value in µT above 0").arg(text);
        return std::nullopt;
    }
    return CustomReference(name, v, basis);
}
}  // namespace

int Report(const QString &in, const QString &out, const QString &site, const QString &notes,
           const QStringList &references) {
    ExposureChoice choice;
    choice.site = site;
    choice.notes = notes;
    for (const QString &text : references) {
        QString problem;
        const std::optional<ExposureReference> r = ReadReference(text, &problem);
        if (!r) return UsageError(QStringLiteral("report"), problem);
        choice.references.push_back(*r);
    }
    if (references.isEmpty())
        for (const ExposureReference &r : BuiltInReferences()) choice.references.push_back(r);
    if (!out.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        std::fprintf(stderr, "fluxmere-cli: %s: the name must end in .pdf\n", qPrintable(out));
        return kUsage;
    }
    if (!LoadFile(in)) return kFailed;
    if (!MayReplace(out)) return kFailed;
    const bool ok = Trap("Report", false, [&] {
        WriteExposureReport(out, choice);
        return true;
    });
    if (ok) return kOk;
    std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
    return kFailed;
}
}  // namespace fm::cli
