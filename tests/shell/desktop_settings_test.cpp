// The desktop settings file: the exposure's choices and the dialogs' folders share it, each
// writer keeps the other's section, free texts come back as typed, and the options record
// stays as it was.
#include "shell/desktop_settings.h"
#include "core/app_paths.h"
#include "core/options.h"
#include "shell/exposure_prefs.h"
#include "shell/file_folders.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QDir>

using namespace fm;

TEST(DesktopSettings, ExposureChoicesAndFoldersKeepEachOtherAndTheOptionsRecord) {
    test::Fresh fresh;
    Options().FirstRun = false;
    SaveOptions();
    const QByteArray options = test::ReadBytes(OptionsPath());
    const QString images = fresh.Path(QStringLiteral("images"));
    QDir().mkpath(images);
    RememberFolder(FileKind::Images, images + QStringLiteral("/chart.png"));

    ExposurePrefs p;
    p.references = {QStringLiteral("it-limit"), QStringLiteral("icnirp-workers")};
    p.own = true;
    p.ownName = QStringLiteral("Client = \"A\\B\"");
    p.ownValue = 2.5;
    p.ownBasis = ExposureBasis::DailyMedian;
    p.site = QStringLiteral("Via Roma 1");
    // Lines that would read as a section or another key, a backslash before an n, blanks.
    p.notes = QStringLiteral("first line\n[Folders]\nimages=/elsewhere\r\nC:\\new\\ \n  end  ");
    SaveExposurePrefs(p);
    EXPECT_EQ(ReadExposurePrefs(), p);
    EXPECT_EQ(StartFolder(FileKind::Images), images);

    const QString tables = fresh.Path(QStringLiteral("tables"));
    QDir().mkpath(tables);
    RememberFolder(FileKind::Tables, tables + QStringLiteral("/out.csv"));
    EXPECT_EQ(ReadExposurePrefs(), p);
    EXPECT_EQ(StartFolder(FileKind::Images), images);
    EXPECT_EQ(test::ReadBytes(OptionsPath()), options);

    // The report's list: the built-in ones in their order, then the user's own.
    const ExposureChoice c = ChoiceOf(p);
    ASSERT_EQ(c.references.size(), 3u);
    EXPECT_EQ(c.references[0].id, QStringLiteral("it-limit"));
    EXPECT_EQ(c.references[2].id, QStringLiteral("custom"));
    EXPECT_EQ(c.references[2].value, 2.5);
    p.ownValue = 0;  // ticked without a value: nothing to judge
    EXPECT_EQ(ChoiceOf(p).references.size(), 2u);
}

TEST(DesktopSettings, AMissingOrDamagedFileGivesTheDefaults) {
    test::Fresh fresh;
    const ExposurePrefs defaults = ReadExposurePrefs();
    EXPECT_EQ(defaults.references, (QStringList{QStringLiteral("it-quality"), QStringLiteral("it-attention"),
                                                QStringLiteral("eu-1999")}));
    EXPECT_FALSE(defaults.own);
    EXPECT_EQ(defaults.ownValue, 0);

    test::WriteBytes(DesktopSettingsPath(), QByteArray("\xff\xfe\x00garbage\n[Exposure\nown=1\n", 27));
    EXPECT_EQ(ReadExposurePrefs(), defaults);
    // Entries that make no sense fall back one by one; unknown references are dropped.
    test::WriteBytes(
        DesktopSettingsPath(),
        "[Exposure]\nreferences=nope,eu-1999,,it-quality\nown.value=-4\nown.basis=weekly\nnotes=a\\qb\\\n");
    const ExposurePrefs p = ReadExposurePrefs();
    EXPECT_EQ(p.references, (QStringList{QStringLiteral("it-quality"), QStringLiteral("eu-1999")}));
    EXPECT_EQ(p.ownValue, 0);
    EXPECT_EQ(p.ownBasis, ExposureBasis::Maximum);
    EXPECT_EQ(p.notes, QStringLiteral("a\\qb\\"));
}
