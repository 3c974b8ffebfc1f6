#pragma once
// Shared helpers of the tests: a fresh state, a scratch folder, a chosen locale.
#include <QByteArray>
#include <QLocale>
#include <QString>
#include <QTemporaryDir>
#include <functional>

namespace fm {
struct MeasurementData;
}

namespace fm::test {

// Gives the data set, the options, the shared variables and the warnings their
// start values, loads the language store in `language` and points the files the
// application writes to a scratch folder.
class Fresh {
public:
    explicit Fresh(int language = 1);
    ~Fresh();
    QString Path(const QString &name) const { return dir_.filePath(name); }
    // Writes `bytes` to `name` in the folder and gives its path.
    QString Write(const QString &name, const QByteArray &bytes) const;
    const QTemporaryDir &Dir() const { return dir_; }

private:
    QTemporaryDir dir_;
};

// Switches the regional settings for the life of the object.
class ScopedLocale {
public:
    explicit ScopedLocale(const QString &name);
    ~ScopedLocale();

private:
    QLocale previous_;
};

// Makes every write past `bytes` fail, even for root, for the life of the object:
// a way to make a save fail halfway.
class FileSizeLimit {
public:
    explicit FileSizeLimit(long long bytes);
    ~FileSizeLimit();

private:
    long long previous_ = -1;
};

// Runs `body` as a user without rights over other users' files: as root, in a child
// process that has dropped to "nobody"; otherwise in this process. Returns what body
// returned, or -1 when the child could not drop its rights or died.
int AsUnprivileged(const std::function<int()> &body);

void WriteBytes(const QString &path, const QByteArray &bytes);
QByteArray ReadBytes(const QString &path);

// A log as the writer of `locale`'s machine puts it on disk (CR LF, quoted lines).
QByteArray LogText(const QStringList &lines);

// A log of five one-minute samples from 14/10/2026 08:00, the third without data.
QByteArray FiveSampleLog();
// A live log that a crash left open: two whole samples and the start of a third.
QByteArray CrashedLiveLog();

// A log of `samples` ten-minute samples of a slowly turning field from 14/10/2026 08:00;
// the sample at index `gap` has no data.
void WriteDayLog(const QString &path, int samples, int gap = -1);
// A data set of one sample at a 5 s step from 1/3/2026 10:00, as an import leaves it.
void SetOneSample(float x, float y, float z, double value);
// Sample i as the simulators' dumps write it: "x y z" with two decimals.
QString SampleText(const MeasurementData &d, int i);

// The user's documents folder, or the home folder where there is none: where file dialogs
// open when nothing else is known.
QString Documents();

// The regional settings put the month before the day (the Surveyor's date bytes follow them).
bool MonthFirst();

// A pseudo-terminal linked as "com1" in `dir`, so that the windows' port opens alike on
// every machine. Returns its master side, or -1.
int LinkPtyAsCom1(const QString &dir);

}  // namespace fm::test
