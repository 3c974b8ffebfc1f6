// File names and the list of recent files.
#include "core/options.h"
#include "files/file_names.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>

using namespace fm;

TEST(FileNames, SplitAtTheLastSeparator) {
    EXPECT_EQ(SplitFileName(QStringLiteral("C:\\Dati\\misura.log"), false), QStringLiteral("C:\\Dati\\"));
    EXPECT_EQ(SplitFileName(QStringLiteral("C:\\Dati\\misura.log"), true), QStringLiteral("misura.log"));
    EXPECT_EQ(SplitFileName(QStringLiteral("/home/tec/misura.log"), false), QStringLiteral("/home/tec/"));
    EXPECT_EQ(SplitFileName(QStringLiteral("misura.log"), false), QString());
    EXPECT_EQ(SplitFileName(QStringLiteral("misura.log"), true), QStringLiteral("misura.log"));
    EXPECT_EQ(SplitFileName(QStringLiteral("/home/tec/"), false), QStringLiteral("/home/tec/"));
    EXPECT_EQ(SplitFileName(QStringLiteral("/home/tec/"), true), QString());
}

TEST(FileNames, RecentFilesMoveToTheTop) {
    test::Fresh fresh;
    test::RecorderHost host;
    const auto list = [] {
        QStringList out;
        for (int i = 1; i <= 4; ++i) out << Options().RecentFile[size_t(i)].trimmed();
        return out;
    };
    SaveMRUFile(QStringLiteral("/a.log"));
    EXPECT_EQ(list(), (QStringList{"/a.log", "", "", ""}));
    EXPECT_EQ(Options().RecentFile[1].size(), kOptionsTextSize);
    for (const char *f : {"/b.log", "/c.log", "/d.log"}) SaveMRUFile(QLatin1String(f));
    EXPECT_EQ(list(), (QStringList{"/d.log", "/c.log", "/b.log", "/a.log"}));
    SaveMRUFile(QStringLiteral("/b.log"));  // slot 3 to the top, slot 4 stays
    EXPECT_EQ(list(), (QStringList{"/b.log", "/d.log", "/c.log", "/a.log"}));
    SaveMRUFile(QStringLiteral("/b.log"));
    EXPECT_EQ(list(), (QStringList{"/b.log", "/d.log", "/c.log", "/a.log"}));
    SaveMRUFile(QStringLiteral("/B.log"));  // another spelling is another file; the oldest goes
    EXPECT_EQ(list(), (QStringList{"/B.log", "/b.log", "/d.log", "/c.log"}));
    EXPECT_EQ(host.recentChanged, 7);
}
