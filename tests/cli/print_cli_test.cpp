// fluxmere-cli print: the pages of each print button as a PDF, with no display, read back
// with poppler's tools.
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {
QString Tool(const char *program, const QStringList &args, int *code = nullptr) {
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(QString::fromLatin1(program), args);
    p.waitForFinished(120000);
    if (code) *code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    // The PDF's ligatures ("ﬁ") read back as their letters.
    return QString::fromUtf8(p.readAll()).normalized(QString::NormalizationForm_KC);
}

class PrintCli : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString log = dir.filePath(QStringLiteral("day.log"));
    QString csv = dir.filePath(QStringLiteral("unit.csv"));
    void SetUp() override {
        fm::test::WriteDayLog(log, 1000);
        QByteArray records;
        for (int i = 0; i < 50; ++i)
            records += "14/10/2026 08:00:00,0.30,0.40,0.10,21.5," + QByteArray::number(1 + i % 7) + ",0.51\n";
        fm::test::WriteBytes(csv, records);
    }
    int Print(const QString &in, const char *kind, bool landscape, const QString &out) {
        QStringList args{QStringLiteral("--options"), dir.filePath(QStringLiteral("none.ini")),
                         QStringLiteral("--lang"), QStringLiteral("en"), QStringLiteral("print"), in,
                         QStringLiteral("--kind"), QString::fromLatin1(kind), QStringLiteral("-o"), out};
        if (landscape) args << QStringLiteral("--landscape");
        int code = -1;
        const QString said = Tool(FLUXMERE_CLI, args, &code);
        EXPECT_EQ(code == 0, QFile::exists(out)) << said.toStdString();
        return code;
    }
};
}  // namespace

TEST_F(PrintCli, EveryKindInBothOrientations) {
    const std::pair<const char *, const char *> kinds[] = {
        {"time", "Time evolution of the field"}, {"stats", "Distribution of the field values"}, {"list", "Bx"}};
    for (auto [kind, body] : kinds) {
        for (bool landscape : {false, true}) {
            SCOPED_TRACE(std::string(kind) + (landscape ? " landscape" : " portrait"));
            const QString pdf = dir.filePath(QStringLiteral("%1-%2.pdf").arg(QLatin1String(kind)).arg(landscape));
            ASSERT_EQ(Print(log, kind, landscape, pdf), 0);
            const QString info = Tool("pdfinfo", {pdf});
            EXPECT_TRUE(info.contains(landscape ? QStringLiteral("842 x 595 pts (A4)")
                                                : QStringLiteral("595 x 842 pts (A4)")))
                << info.toStdString();
            const QString text = Tool("pdftotext", {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
            EXPECT_TRUE(text.contains(QLatin1String(body)));
            if (QLatin1String(kind) == QLatin1String("list")) {
                // A heading of 7 lines and 1000 rows: many pages, the last row on the last.
                EXPECT_FALSE(info.contains(QRegularExpression(QStringLiteral("Pages: +1\n"))));
                const QString listed = Tool(FLUXMERE_CLI, {QStringLiteral("list"), log}).trimmed();
                const QString last = listed.mid(listed.lastIndexOf(QLatin1Char('\n')) + 1);
                EXPECT_TRUE(text.contains(last.left(last.indexOf(QLatin1Char(' '), 12)))) << last.toStdString();
                continue;
            }
            EXPECT_TRUE(text.contains(QStringLiteral("Magnetic field measurement ID - Cabina")));
            EXPECT_TRUE(text.contains(QStringLiteral("[ 1000 Samples. Start ")));
            EXPECT_TRUE(text.contains(QStringLiteral(" Step 10 minutes ]")));
            EXPECT_TRUE(text.contains(QStringLiteral("Fluxmere QL540. SW Rev. ")));
            EXPECT_TRUE(text.contains(QStringLiteral("Printed on ")));
            EXPECT_EQ(text.contains(QStringLiteral("Resultant")), QLatin1String(kind) == QLatin1String("time"));
        }
    }
}

TEST_F(PrintCli, RfChartAndRefusals) {
    const QString rf = dir.filePath(QStringLiteral("rf.pdf"));
    ASSERT_EQ(Print(csv, "rf", false, rf), 0);
    EXPECT_TRUE(Tool("pdftotext", {rf, QStringLiteral("-")}).contains(QStringLiteral("(V/m)")));
    EXPECT_EQ(Print(log, "rf", false, dir.filePath(QStringLiteral("no.pdf"))), 64);
    EXPECT_EQ(Print(log, "time", false, dir.filePath(QStringLiteral("page.png"))), 64);
    EXPECT_EQ(Print(log, "pie", false, dir.filePath(QStringLiteral("pie.pdf"))), 64);
    // A folder that is not there: a message, no file and no temporary file anywhere.
    EXPECT_EQ(Print(log, "time", false, dir.filePath(QStringLiteral("gone/page.pdf"))), 1);
    EXPECT_EQ(QDir(dir.path()).entryList({QStringLiteral(".*fluxmere-tmp*")}, QDir::Hidden | QDir::Files).size(), 0);
}
