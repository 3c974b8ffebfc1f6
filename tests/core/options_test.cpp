// The options record: its defaults, its bytes on disk and a save that cannot fail halfway.
#include "core/options.h"
#include "core/app_paths.h"
#include "support/recorder_host.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>
#include <cstring>

using namespace fm;

namespace {
template <class T>
T At(const QByteArray &b, int offset) {
    T v;
    std::memcpy(&v, b.constData() + offset, sizeof v);
    return qFromLittleEndian(v);
}
}  // namespace

TEST(Options, FirstStartWritesTheDefaultRecord) {
    test::Fresh fresh;
    test::RecorderHost host;
    QFile::remove(OptionsPath());
    ReadOptions();
    const OptionsRecord &o = Options();
    EXPECT_TRUE(o.FirstRun);  // the port, threshold and memory size: in the bytes below
    EXPECT_TRUE(o.OpenGraphTe && o.OpenSource && o.ShowWarnings && o.InfoShown && o.InfoDocked);
    EXPECT_FALSE(o.OpenGraphSt || o.WarnOnDate || o.ConnectOnStart);
    SaveOptions();
    const QByteArray b = test::ReadBytes(OptionsPath());
    ASSERT_EQ(b.size(), kOptionsRecordSize);
    EXPECT_EQ(uint8_t(b[0]), 1);
    EXPECT_EQ(At<uint32_t>(b, 4), 0xFF0000u);
    EXPECT_EQ(At<uint32_t>(b, 40), 255u);
    EXPECT_EQ(At<uint32_t>(b, 44), 0x00C000u);
    EXPECT_EQ(b.mid(54, 4096), QByteArray(4096, '\0'));   // slot 0 stays zero-filled
    EXPECT_EQ(b.mid(4150, 4096), QByteArray(4096, ' '));  // an empty recent file
    EXPECT_EQ(At<int16_t>(b, 24630), -1);                 // InfoDocked
    float soglia;
    std::memcpy(&soglia, b.constData() + 24644, 4);
    EXPECT_FLOAT_EQ(soglia, 0.2f);
    EXPECT_EQ(At<int32_t>(b, 24652), 65536);
    EXPECT_EQ(At<int16_t>(b, 24656), -1);
    ReadOptions();
    EXPECT_FALSE(Options().FirstRun);
    EXPECT_EQ(Options().ToBytes().mid(0, 24656), b.mid(0, 24656));
    EXPECT_TRUE(host.boxes.empty());
}

TEST(Options, AFileThatCannotBeReadIsReportedAndLeavesTheDefaults) {
    test::Fresh fresh;
    test::RecorderHost host;
    Options().ComPort = 9;  // what an earlier reading left
    ASSERT_TRUE(QDir().mkpath(OptionsPath()));  // a folder: unreadable for anyone
    EXPECT_FALSE(ReadOptions());
    EXPECT_EQ(Options().ComPort, 1);
    EXPECT_EQ(Options().MemorySize, 65536);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_TRUE(host.boxes[0].text.contains(QStringLiteral("Error Raised by  : ReadOptions\r\n")));
    QDir().rmdir(OptionsPath());
    EXPECT_TRUE(ReadOptions());  // no file at all is no fault
}

TEST(Options, TextFieldsAreWindows1252AndCut) {
    OptionsRecord o = OptionsRecord::Defaults();
    o.LastPath = OptionText(QStringLiteral("C:\\Dati\\città€"));
    o.RecentFile[1] = OptionText(QString(5000, QLatin1Char('x')));
    const QByteArray b = o.ToBytes();
    ASSERT_EQ(b.size(), kOptionsRecordSize);
    EXPECT_EQ(b.mid(20534, 14), QByteArray("C:\\Dati\\citt\xE0\x80", 14));
    EXPECT_EQ(b.mid(4150, 4096), QByteArray(4096, 'x'));
    const OptionsRecord back = OptionsRecord::FromBytes(b);
    EXPECT_EQ(back.LastPath.trimmed(), QStringLiteral("C:\\Dati\\città€"));
    EXPECT_EQ(back.RecentFile[1].size(), kOptionsTextSize);
}

TEST(Options, ShortOrForeignFilesAreTakenFieldByField) {
    test::Fresh fresh;
    test::RecorderHost host;
    QByteArray shortFile(10, '\0');
    shortFile[0] = 7;  // ComPort
    shortFile[1] = 1;  // English
    shortFile[2] = '\xFF';
    shortFile[3] = '\xFF';
    test::WriteBytes(OptionsPath(), shortFile);
    ReadOptions();
    EXPECT_EQ(Options().ComPort, 7);
    EXPECT_EQ(Options().Language, 1);
    EXPECT_TRUE(Options().ConnectOnStart);
    EXPECT_EQ(Options().MemorySize, 0);  // what the file lacks stays zero
    EXPECT_EQ(Options().Soglia, 0.0f);
    EXPECT_FALSE(Options().FirstRun);
    EXPECT_TRUE(host.boxes.empty());
}

// Where the program folder cannot take the options, the window and fluxmere-cli must
// still meet in one folder, named after the product rather than the running program.
TEST(OptionsPlace, FallsBackToOneFolderWhateverTheProgramIsCalled) {
    QTemporaryDir home;
    const QByteArray oldConfig = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    const QString oldName = QCoreApplication::applicationName();
    for (const char *name : {"fluxmere-cli", "Fluxmere"}) {
        QCoreApplication::setApplicationName(QLatin1String(name));
        SetAppDir(QStringLiteral("/nonexistent/program/folder"));
        SetWritableDir(QString());
        EXPECT_EQ(OptionsPath(), home.path() + QStringLiteral("/Fluxmere/Fluxmere.ini")) << name;
        EXPECT_TRUE(QFileInfo(home.path() + QStringLiteral("/Fluxmere")).isDir());
    }
    QCoreApplication::setApplicationName(oldName);
    SetAppDir(QString());
    SetWritableDir(QString());
    if (oldConfig.isEmpty()) qunsetenv("XDG_CONFIG_HOME");
    else qputenv("XDG_CONFIG_HOME", oldConfig);
}
