// The ";" and tab tables, line by line under two regional settings.
#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "files/table_export.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

namespace {
QStringList Lines(const QString &path) {
    QStringList l = FromCp1252(test::ReadBytes(path)).split(QStringLiteral("\r\n"));
    if (!l.isEmpty() && l.last().isEmpty()) l.removeLast();
    return l;
}
} // namespace

TEST(TableExport, BothTablesInBothRegionalSettings) {
    test::Fresh fresh(1);
    test::RecorderHost host;
    const QString log = fresh.Path(QStringLiteral("in.log"));
    test::WriteBytes(log, test::LogText({"Field Activity Log", "13/10/2026 23:59:00@14/10/2026 00:02:00@3", "1n", "2",
                                         " ID ", "Cabina", "0.50 12.25 0.00  0", "-1 -1 -1 0"}));
    ASSERT_TRUE(LoadFile(log));
    Data().DataSaved = false;
    {
        test::ScopedLocale it(QStringLiteral("it_IT"));
        const QString csv = fresh.Path(QStringLiteral("out.tab"));  // the filter decides, not the extension
        ASSERT_TRUE(SaveTable(csv, 1));
        const QStringList l = Lines(csv);
        ASSERT_EQ(l.size(), 7);
        EXPECT_EQ(l[0], ResString(3016) + QStringLiteral(";"));
        EXPECT_EQ(l[1], ResString(3017) + QStringLiteral(": ID;"));
        EXPECT_EQ(l[3], ResString(3019) + QStringLiteral(": File;"));
        EXPECT_EQ(l[4], QStringLiteral("%1;%2;%3;%4;%5;").arg(ResString(4050), ResString(4015), ResString(4016),
                                                              ResString(4017), ResString(4018)));
        EXPECT_EQ(l[5], QStringLiteral("13/10/2026 23:59:00;,5000;12,2500;,0000;12,2600;"));
        // Midnight shows its time, and a sample without data its -1 values.
        EXPECT_EQ(l[6], QStringLiteral("14/10/2026 00:00:00;-1,0000;-1,0000;-1,0000;-1,0000;"));
    }
    {
        test::ScopedLocale us(QStringLiteral("en_US"));
        const QString tab = fresh.Path(QStringLiteral("out.csv"));
        ASSERT_TRUE(SaveTable(tab, 2));
        const QStringList l = Lines(tab);
        ASSERT_EQ(l.size(), 2);
        EXPECT_EQ(l[0], QStringLiteral("10/13/2026 11:59:00 PM\t    0.50\t   12.25\t    0.00\t   12.26"));
        EXPECT_EQ(l[1], QStringLiteral("10/14/2026 12:00:00 AM\t   -1.00\t   -1.00\t   -1.00\t   -1.00"));
    }
    EXPECT_FALSE(Data().DataSaved);  // exporting is not saving
    // A failed export leaves no half-written table in place of the old one.
    const QString old = fresh.Path(QStringLiteral("old.csv"));
    test::WriteBytes(old, "previous");
    {
        test::FileSizeLimit limit(30);
        EXPECT_FALSE(SaveCsvFile(old));
    }
    EXPECT_EQ(test::ReadBytes(old), QByteArray("previous"));
    EXPECT_TRUE(host.LastBox().contains(QStringLiteral("SaveCsvFile")));
}

// The axes are floats of any precision after a CSV import: each is written from its own
// digits, so 0.165 is 0.16 in the tab table as in the data list, and nothing shows noise.
TEST(TableExport, FloatsAsTheirOwnDigits) {
    test::Fresh fresh(1);
    test::ScopedLocale us(QStringLiteral("en_US"));
    test::SetOneSample(0.165f, 0.00025f, 3.46f, 0.165);
    const QString tab = fresh.Path(QStringLiteral("out.tab"));
    ASSERT_TRUE(SaveTable(tab, 2));
    EXPECT_EQ(Lines(tab).value(0),
              QStringLiteral("3/1/2026 10:00:00 AM\t    0.16\t    0.00\t    3.46\t    0.16"));
    const QString csv = fresh.Path(QStringLiteral("out.csv"));
    ASSERT_TRUE(SaveTable(csv, 1));
    EXPECT_EQ(Lines(csv).value(5), QStringLiteral("3/1/2026 10:00:00 AM;.1650;.0002;3.4600;.1650;"));
}
