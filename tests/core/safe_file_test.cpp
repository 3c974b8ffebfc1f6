// The safe writer: whatever goes wrong, the old file stays whole and no temporary file
// is left behind; the new file keeps the old one's mode; names keep their bytes.
#include "core/safe_file.h"
#include "core/fault.h"
#include "core/file_access.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <csignal>

using namespace fm;

namespace {
class SafeFileTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString target = dir.filePath(QStringLiteral("data.log"));

    // Everything in the folder but the target.
    QStringList Others() const {
        QStringList names = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
        names.removeAll(QStringLiteral("data.log"));
        return names;
    }
    static Fault FaultOf(const std::function<void()> &body) {
        try {
            body();
        } catch (const Fault &f) {
            return f;
        }
        return {};
    }
    static unsigned Mode(const QString &path) {
        struct stat st {};
        ::stat(NativeName(path).constData(), &st);
        return st.st_mode & 07777;
    }
};
}  // namespace

TEST_F(SafeFileTest, AFailedWriteLeavesTheOldFileAndNoTemporaryFile) {
    test::WriteBytes(target, "previous");
    const Fault full = FaultOf([&] {
        test::FileSizeLimit limit(100);
        SafeFile::Save(target, QByteArray(5000, 'x'));
    });
    EXPECT_EQ(full.number, err::DiskFull);
    EXPECT_TRUE(full.description.startsWith(QStringLiteral("File too large: ")))
        << qPrintable(full.description);
    EXPECT_EQ(test::ReadBytes(target), QByteArray("previous"));
    EXPECT_TRUE(Others().isEmpty()) << qPrintable(Others().join(QLatin1Char(' ')));

    // A drawing that failed never reaches the file.
    EXPECT_EQ(FaultOf([&] { SafeFile::Render(target, [](QIODevice &) { return false; }); }).number,
              err::DeviceIO);
    EXPECT_EQ(test::ReadBytes(target), QByteArray("previous"));
    EXPECT_EQ(FaultOf([&] { SafeFile::Save(dir.path(), "x"); }).number, err::PathAccess);

    // The causes in the system's words, whatever the locale.
    EXPECT_EQ(FaultOf([] { RaiseSystem(ENOSPC, QStringLiteral("/x")); }).description,
              QStringLiteral("No space left on device: /x"));
    EXPECT_EQ(FaultOf([] { RaiseSystem(EACCES, QStringLiteral("/x")); }).number, err::PermissionDenied);
}

TEST_F(SafeFileTest, TheNewFileKeepsTheModeAndTheLinkOfTheOldOne) {
    test::WriteBytes(target, "previous");
    ::chmod(NativeName(target).constData(), 0640);
    SafeFile::Save(target, "new");
    EXPECT_EQ(Mode(target), 0640u);
    EXPECT_EQ(test::ReadBytes(target), QByteArray("new"));

    const mode_t mask = ::umask(027);
    const QString fresh = dir.filePath(QStringLiteral("fresh.log"));
    SafeFile::Save(fresh, "x");
    ::umask(mask);
    EXPECT_EQ(Mode(fresh), 0640u);

    const QString link = dir.filePath(QStringLiteral("link.log"));
    ASSERT_TRUE(QFile::link(target, link));
    SafeFile::Save(link, "through the link");
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(test::ReadBytes(target), QByteArray("through the link"));
}

// The rename needs only the folder's rights; a read-only file is still not replaced.
TEST_F(SafeFileTest, AFileTheUserMayNotWriteIsRefused) {
    test::WriteBytes(target, "protected");
    ::chmod(NativeName(dir.path()).constData(), 0777);
    ::chmod(NativeName(target).constData(), 0444);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(NativeName(target).constData(), 65534, 65534), 0);
    }
    const int code = test::AsUnprivileged([&] {
        const Fault f = FaultOf([&] { SafeFile::Save(target, "replaced"); });
        return f.number == err::PermissionDenied &&
                       f.description.startsWith(QStringLiteral("Permission denied"))
                   ? 0
                   : 1;
    });
    if (code < 0) {
        GTEST_SKIP() << "could not run without rights";
    }
    EXPECT_EQ(code, 0);
    EXPECT_EQ(test::ReadBytes(target), QByteArray("protected"));
    EXPECT_TRUE(Others().isEmpty());
}

TEST_F(SafeFileTest, ARunKilledBeforeItsRenameLeavesNothingForLong) {
    test::WriteBytes(target, "previous");
    const pid_t child = ::fork();
    if (child == 0) {
        SafeFile file(target);
        file.Open();
        file.Write("half of it");
        ::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(Others().size(), 1);
    EXPECT_TRUE(Others()[0].startsWith(QStringLiteral(".data.log.fluxmere-tmp-")));
    // Another file's temporary files are not this save's business.
    test::WriteBytes(dir.filePath(QStringLiteral(".other.log.fluxmere-tmp-abcdef")), "x");

    SafeFile::Save(target, "whole");
    EXPECT_EQ(test::ReadBytes(target), QByteArray("whole"));
    EXPECT_EQ(Others(), QStringList{QStringLiteral(".other.log.fluxmere-tmp-abcdef")});
}

// A name that is not UTF-8 (Latin-1 "é" here) is written and read under its own bytes.
TEST_F(SafeFileTest, NamesKeepTheirBytes) {
    const QByteArray raw = NativeName(dir.path()) + "/caf\xE9.log";
    const QString name = NameFromNative(raw);
    EXPECT_EQ(NativeName(name), raw);
    EXPECT_EQ(NameFromNative("caf\xC3\xA9"), QStringLiteral("café"));
    EXPECT_EQ(NativeName(QStringLiteral("café")), QByteArray("caf\xC3\xA9"));

    SafeFile::Save(name, "bytes");
    struct stat st {};
    ASSERT_EQ(::stat(raw.constData(), &st), 0);
    EXPECT_EQ(st.st_size, 5);
    QFile in;
    OpenForReading(in, name);
    EXPECT_EQ(in.readAll(), QByteArray("bytes"));
    ::unlink(raw.constData());  // QTemporaryDir would look for it under U+FFFD
}
