// The language store: loading, both languages, and the numbers the application uses.
#include "core/language.h"
#include "core/app_paths.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>

using namespace fm;

TEST(Language, LoadsBothLanguagesAndFailsWithoutTheFile) {
    FreeResLibrary();
    EXPECT_EQ(ResString(21), QString());  // nothing loaded
    ASSERT_TRUE(InitLibrary(QStringLiteral("Language.dll")));
    SetLanguage(0);
    const QString it = ResString(4001 + 1);
    SetLanguage(1);
    EXPECT_EQ(ResString(4002), QStringLiteral("Cancel"));
    EXPECT_EQ(it, QStringLiteral("Annulla"));
    EXPECT_EQ(ResString(4999), QString());
    EXPECT_EQ(ResString(0), QString());
    EXPECT_FALSE(InitLibrary(QStringLiteral("NoSuch.dll")));
    EXPECT_EQ(ResString(4002), QString());

    QTemporaryDir dir;
    test::WriteBytes(dir.filePath(QStringLiteral("Language.dll")), "not a resource file");
    SetAppDir(dir.path());
    EXPECT_FALSE(InitLibrary(QStringLiteral("Language.dll")));
    SetAppDir(QString());
}

TEST(Language, EveryNumberInUseHasBothTexts) {
    test::Fresh fresh;
    QList<int> used = {2,    3,    4,    5,    6,    7,    8,    17,   18,   19,   20,
                       21,   22,   24,   25,   26,   27,   28,   31,   39,   3001, 3002,
                       3003, 3004, 3005, 3006, 3024, 3027, 3028, 3029, 3030, 3031, 3032,
                       3042, 4001, 4002, 4003, 4004, 4089, 4200, 4201, 4202, 4203, 4204};
    for (int n = 40; n <= 51; ++n) used << n;
    for (int n = 3010; n <= 3023; ++n) used << n;
    for (int n = 4100; n <= 4141; ++n) used << n;
    for (int n = 4021; n <= 4057; ++n) used << n;
    for (int lang : {0, 1}) {
        SetLanguage(lang);
        for (int n : used) EXPECT_FALSE(ResString(n).isEmpty()) << "string " << n << " language " << lang;
    }
    SetLanguage(0);
    EXPECT_NE(ResString(4101), QStringLiteral("&Load Data File..."));
    EXPECT_EQ(TagNumber(QStringLiteral("4037")), 4037);
    EXPECT_EQ(TagNumber(QStringLiteral("12abc")), 12);
    EXPECT_EQ(TagNumber(QStringLiteral("abc")), 0);
}
