// Where file dialogs open: the folder last used for the kind of file, else the documents.
#include "shell/file_folders.h"
#include "core/app_paths.h"
#include "core/options.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QDir>

using namespace fm;

using test::Documents;

TEST(FileFolders, EachKindKeepsItsOwnFolderAndNeverThePrograms) {
    test::Fresh fresh;
    const QString tables = fresh.Path(QStringLiteral("tables")),
                  images = fresh.Path(QStringLiteral("images"));
    QDir().mkpath(tables);
    QDir().mkpath(images);

    // A first start: LastPath holds the program's folder, and nothing else is known.
    Options() = OptionsRecord::Defaults();
    for (FileKind k : {FileKind::Logs, FileKind::Tables, FileKind::Images})
        EXPECT_EQ(StartFolder(k), Documents());

    RememberFolder(FileKind::Tables, tables + QStringLiteral("/out.csv"));
    RememberFolder(FileKind::Images, images + QStringLiteral("/chart.png"));
    RememberFolder(FileKind::Logs, fresh.Path(QStringLiteral("day.log")));
    EXPECT_EQ(StartFolder(FileKind::Tables), tables);
    EXPECT_EQ(StartFolder(FileKind::Images), images);
    EXPECT_EQ(QDir(StartFolder(FileKind::Logs)), QDir(fresh.Dir().path()));
    // Logs live in the options record as they always did; the others beside it.
    EXPECT_EQ(Options().LastPath.trimmed(), fresh.Dir().path() + QLatin1Char('/'));
    EXPECT_EQ(Options().ToBytes().size(), kOptionsRecordSize);
    EXPECT_TRUE(QFileInfo::exists(DesktopSettingsPath()));

    // A folder that went away is not offered.
    QDir(images).removeRecursively();
    EXPECT_EQ(StartFolder(FileKind::Images), Documents());
    EXPECT_EQ(StartFolder(FileKind::Tables), tables);
}

TEST(FileFolders, AnUnwritableSettingsFileCostsNothingButTheFolder) {
    test::Fresh fresh;
    Options() = OptionsRecord::Defaults();
    // A folder in the way of the file: the save cannot happen, and nothing is raised.
    QDir().mkpath(DesktopSettingsPath());
    RememberFolder(FileKind::Tables, fresh.Path(QStringLiteral("out.csv")));
    EXPECT_EQ(StartFolder(FileKind::Tables), Documents());
}
