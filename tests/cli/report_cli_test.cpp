// fluxmere-cli report: the exposure report of a measurement whose answers are known by hand,
// read back with poppler's tools, and the command's refusals.
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {
struct Ran {
    int code = -1;
    QString said;
};

Ran Tool(const QString &program, const QStringList &args) {
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    p.waitForFinished(120000);
    // The PDF's ligatures ("ﬁ") read back as their letters.
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
            QString::fromUtf8(p.readAll()).normalized(QString::NormalizationForm_KC)};
}

// The text's blanks, however many, as one: a table's columns read as one line.
QString OneSpaced(const QString &text) {
    QString out;
    for (const QString &line : text.split(QLatin1Char('\n'))) out += line.simplified() + QLatin1Char('\n');
    return out;
}

class ReportCli : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString log = dir.filePath(QStringLiteral("site.log"));

    // Ten-minute samples from 14/10/2026 08:00, 144 a day:
    //   day 1: 140 at 5 µT (3, 4, 0) and 4 at 20 µT (12, 16, 0), from its 11th sample;
    //   day 2: 72 at 5 µT, then 72 at 2 µT;
    //   day 3, partial: 52 at 3 µT and 20 without data, 12 hours in all.
    // 360 samples, 340 with data. Medians 5, 3.5, 3; the third period holds 52 of 72 (72.2 %).
    // Ranks (ascending): 72 x 2, 52 x 3, 212 x 5, 4 x 20: P50 (170) = P90 (306) = P95 (323) = 5,
    // P99 (337) = 20. Mean 1440 / 340 = 4.235. Above 4 µT: day 1 and the first half of
    // day 2, 216 samples in one run: 36 h, 63.5 % of 340.
    void SetUp() override {
        QStringList lines{"Field Activity Log", "14/10/2026 08:00:00@16/10/2026 20:00:00@3", "10n", "360",
                          "QL540-0042  ", "Cabina MT via Roma"};
        for (int i = 0; i < 144; ++i) lines << (i >= 10 && i < 14 ? "12.00 16.00 0.00  0" : "3.00 4.00 0.00  0");
        for (int i = 0; i < 144; ++i) lines << (i < 72 ? "3.00 4.00 0.00  0" : "1.20 1.60 0.00  0");
        for (int i = 0; i < 72; ++i) lines << (i % 18 < 5 ? "-1 -1 -1 0" : "1.80 2.40 0.00  0");
        fm::test::WriteBytes(log, fm::test::LogText(lines));
    }
    Ran Report(const QString &lang, const QStringList &more) {
        return Tool(QStringLiteral(FLUXMERE_CLI),
                    QStringList{QStringLiteral("--options"), dir.filePath(QStringLiteral("none.ini")),
                                QStringLiteral("--lang"), lang, QStringLiteral("--threshold"), QStringLiteral("4"),
                                QStringLiteral("report")} +
                        more);
    }
    QString Text(const QString &pdf) {
        return OneSpaced(Tool(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")}).said);
    }
};
}  // namespace

// In Italian (the tests' regional settings are Italian): every figure, every period, every
// verdict against the six built-in references, and the pages.
TEST_F(ReportCli, TheReportOfAKnownMeasurement) {
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const Ran r = Report(QStringLiteral("it"), {log, QStringLiteral("-o"), pdf, QStringLiteral("--site"),
                                                QStringLiteral("Scuola Manzoni, aula 3"), QStringLiteral("--notes"),
                                                QStringLiteral("Sonda a 1 m dal suolo")});
    ASSERT_EQ(r.code, 0) << r.said.toStdString();
    const QString info = Tool(QStringLiteral("pdfinfo"), {pdf}).said;
    EXPECT_TRUE(info.contains(QStringLiteral("595 x 842 pts (A4)"))) << info.toStdString();
    EXPECT_TRUE(info.contains(QRegularExpression(QStringLiteral("Pages: +2\n")))) << info.toStdString();
    const QString text = Text(pdf);
    const auto has = [&](const QString &expected) {
        const QString line = expected.normalized(QString::NormalizationForm_KC);  // "µ" reads back as "μ"
        EXPECT_TRUE(text.contains(line)) << "missing: " << line.toStdString() << "\n" << text.toStdString();
    };
    has(QStringLiteral("Rapporto di esposizione al campo magnetico"));
    has(QStringLiteral("Sito Scuola Manzoni, aula 3"));
    has(QStringLiteral("Note Sonda a 1 m dal suolo"));
    has(QStringLiteral("Strumento - Codice breve QL540-0042\n"));
    has(QStringLiteral("Strumento - Codice esteso Cabina MT via Roma"));
    has(QStringLiteral("Data inizio 14/10/2026 08:00:00"));
    has(QStringLiteral("Data fine 16/10/2026 20:00:00"));
    has(QStringLiteral("Passo 10 minuti"));
    has(QStringLiteral("Campioni 360"));
    // The figures.
    has(QStringLiteral("Mediana più alta sulle 24 ore 5,00 µT (N. 1)"));
    has(QStringLiteral("50° percentile (P50) 5,00 µT"));
    has(QStringLiteral("90° percentile (P90) 5,00 µT"));
    has(QStringLiteral("95° percentile (P95) 5,00 µT"));
    has(QStringLiteral("99° percentile (P99) 20,00 µT"));
    has(QStringLiteral("Massimo 20,00 µT"));
    has(QStringLiteral("Media pesata sul tempo 4,24 µT"));
    has(QStringLiteral("Soglia 4 µT"));
    has(QStringLiteral("Tempo sopra la soglia 36 h 00 min 00 s (63,5 % dei campioni validi)"));
    has(QStringLiteral("Tratto continuo più lungo sopra la soglia 36 h 00 min 00 s dal 14/10/2026 08:00:00"));
    // The 24-hour periods.
    has(QStringLiteral("1 14/10/2026 08:00:00 5,00 µT 144 100,0 % completo"));
    has(QStringLiteral("2 15/10/2026 08:00:00 3,50 µT 144 100,0 % completo"));
    has(QStringLiteral("3 16/10/2026 08:00:00 3,00 µT 52 72,2 % parziale, non conclusivo"));
    // The verdicts, in the built-in order.
    has(QStringLiteral("Obiettivo di qualità (DPCM 8/7/2003) 3 µT mediana sulle 24 ore 5,00 µT (N. 1) superato"));
    has(QStringLiteral("Valore di attenzione (DPCM 8/7/2003) 10 µT mediana sulle 24 ore 5,00 µT (N. 1) non conclusivo"));
    has(QStringLiteral("Limite di esposizione (DPCM 8/7/2003) 100 µT massimo 20,00 µT rispettato"));
    has(QStringLiteral("Raccomandazione UE 1999/519/CE 100 µT massimo 20,00 µT rispettato"));
    has(QStringLiteral("ICNIRP 2010, popolazione 200 µT massimo 20,00 µT rispettato"));
    has(QStringLiteral("ICNIRP 2010, lavoratori 1000 µT massimo 20,00 µT rispettato"));
    // The charts, the footer of each page and its number.
    has(QStringLiteral("Andamento del campo nel tempo"));
    has(QStringLiteral("Distribuzione dei valori del campo"));
    has(QStringLiteral("Profilo orario (media per ora del giorno)"));
    EXPECT_EQ(text.count(QStringLiteral("Fluxmere QL540. SW Rev. ")), 2);
    EXPECT_EQ(text.count(QStringLiteral("Stampato il ")), 2);
    has(QStringLiteral("Pagina 1 di 2"));
    has(QStringLiteral("Pagina 2 di 2"));
}

// In English, with references of the user's own in the order given.
TEST_F(ReportCli, ReferencesOfTheUsersOwn) {
    const QString pdf = dir.filePath(QStringLiteral("own.pdf"));
    const Ran r = Report(QStringLiteral("en"),
                         {log, QStringLiteral("-o"), pdf, QStringLiteral("--reference"), QStringLiteral("Cabina=15:maximum"),
                          QStringLiteral("--reference"), QStringLiteral("icnirp-public"), QStringLiteral("--reference"),
                          QStringLiteral("Scuola=6")});
    ASSERT_EQ(r.code, 0) << r.said.toStdString();
    const QString text = Text(pdf).normalized(QString::NormalizationForm_KD);
    const auto at = [&](const char *line) {
        return text.indexOf(QString::fromUtf8(line).normalized(QString::NormalizationForm_KD));
    };
    const qsizetype cabina = at("Cabina 15 µT maximum 20,00 µT exceeded");
    const qsizetype public_ = at("ICNIRP 2010, general public 200 µT maximum 20,00 µT met");
    const qsizetype scuola =
at("Scuola 6 µT 24-hour median 5,00 µT (No. 1) not conclusive");
    EXPECT_TRUE(cabina >= 0 && public_ > cabina && scuola > public_) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("Italian quality objective")));
    EXPECT_GE(at("3 16/10/2026 08:00:00 3,00 µT 52 72,2 % partial, not conclusive"), 0);
}

// Usage mistakes are told before anything is loaded or written.
TEST_F(ReportCli, Refusals) {
    const QString pdf = dir.filePath(QStringLiteral("no.pdf"));
    const std::pair<QStringList, const char *> cases[] = {
        {{log, QStringLiteral("-o"), pdf, QStringLiteral("--reference"), QStringLiteral("it-qualita")},
         "unknown reference 'it-qualita'"},
        {{log, QStringLiteral("-o"), pdf, QStringLiteral("--reference"), QStringLiteral("Cabina=abc")},
         "needs a name and a value"},
        {{log, QStringLiteral("-o"), pdf, QStringLiteral("--reference"), QStringLiteral("Cabina=50:p95")},
         "the basis is median or maximum"},
        {{log, QStringLiteral("-o"), dir.filePath(QStringLiteral("report.png"))}, "must end in .pdf"},
        {{log}, "report takes FILE and -o OUT.pdf"},
    };
    for (const auto &[args, message] : cases) {
        SCOPED_TRACE(args.join(QLatin1Char(' ')).toStdString());
        const Ran r = Report(QStringLiteral("en"), args);
        EXPECT_EQ(r.code, 64);
        EXPECT_TRUE(r.said.contains(QLatin1String(message))) << r.said.toStdString();
    }
    EXPECT_TRUE(QDir(dir.path()).entryList({QStringLiteral("*.pdf"), QStringLiteral("*.png")}).isEmpty());
    // The help names the built-in references and the syntax of one's own.
    const Ran help = Tool(QStringLiteral(FLUXMERE_CLI), {QStringLiteral("report"), QStringLiteral("--help")});
    EXPECT_TRUE(help.said.contains(QStringLiteral("NAME=VALUE:maximum"))) << help.said.toStdString();
    EXPECT_TRUE(help.said.contains(QStringLiteral("icnirp-workers"))) << help.said.toStdString();
    // A folder that is not there: a message, no file and no temporary file anywhere.
    EXPECT_EQ(Report(QStringLiteral("en"), {log, QStringLiteral("-o"), dir.filePath(QStringLiteral("gone/r.pdf"))}).code, 1);
    EXPECT_EQ(QDir(dir.path()).entryList({QStringLiteral(".*fluxmere-tmp*")}, QDir::Hidden | QDir::Files).size(), 0);
}
