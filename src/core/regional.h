#pragma once
// Every date and number text of the application, and every tolerant parse, follow
// the system's regional settings (QLocale's default, which follows LANG/LC_ALL).
// Dates in memory are OLE Automation dates: days since 30 December 1899, with the
// time of day as the fraction (for days before that, the fraction still counts
// forward from midnight).
#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringView>
#include <cstdint>
#include <functional>
#include <vector>

namespace fm {

// ---- Dates -----------------------------------------------------------------
double DateFromParts(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
double DateFromDateTime(const QDateTime &dt);
// Rounded to the nearest millisecond.
QDateTime DateToDateTime(double oleDate);
// Date arithmetic with the interval letters "s", "n", "h", "d", "w", "y", "m", "q"
// and "ww", "yyyy"; any other interval raises fault 5.
double DateAdd(const QString &interval, double number, double date);
bool IsDateInterval(const QString &interval);
// How many interval boundaries lie between d1 and d2 (d2 - d1), as date arithmetic counts.
int64_t DateDiff(const QString &interval, double d1, double d2);
// The present moment to the second, from the computer's clock unless a test has
// put another clock in its place.
double Now();
// Replaces the clock Now() reads; an empty function gives the computer's back.
void SetClock(std::function<double()> clock);

// The general date form: short date with a four-digit year, a blank, the long time
// without time zone; a date at exactly midnight has no time part.
QString GeneralDate(double date);
QString ShortDate(double date);  // "ddddd"
QString LongTime(double date);   // "ttttt"
// The same texts for many samples in a row: each day's date and each second's time
// go through the locale once, so a year of samples costs a few thousand texts. Each
// text comes with its bytes in the files' code page, for tables written to disk.
class DateTexts {
public:
    struct Text {
        QString text;
        QByteArray bytes;
    };
    // trimmed: without the blanks around them, as the list by time shows them.
    explicit DateTexts(bool trimmed = false) : trimmed_(trimmed) {}
    const Text &ShortDate(double date);
    const Text &LongTime(double date);
    // Whether the general form has a time part: not at midnight.
    bool HasTime(double date);
    QString General(double date);
    // The widest date-and-time text of any second in the years from first to last, so a
    // column of them can be padded to one width whatever the hour or day.
    int Widest(double first, double last);

private:
    void Split(double date);
    Text Make(const QString &text) const;
    bool trimmed_;
    int64_t day_ = 0, second_ = 0;
    bool dayKnown_ = false;
    int64_t textDay_ = 0;
    Text dayText_;
    std::vector<Text> times_;  // by second of the day, made when first asked for
    std::vector<bool> timeKnown_;
};
// Pattern-free forms the tolerant parser reads back.
QString ShortDateFormat();  // e.g. "dd/MM/yyyy"
QString LongTimeFormat();   // e.g. "HH:mm:ss"

// Reads a date the way a user or a log file of either platform writes it: the
// locale's own form first, then the common Italian, US and ISO forms. Two-digit
// years 00-29 are 2000-2029, 30-99 are 1930-1999.
bool ParseDate(QStringView text, double *out);
inline bool IsDate(QStringView text) { return ParseDate(text, nullptr); }

// ---- Numbers ---------------------------------------------------------------
QChar DecimalMark();
// Each number is formatted as the type it is: a 32-bit float from its own shortest
// text (3.46f is "3.46", never "3.4600000381469727"), a double from its own. Any other
// type, and a float on its way through a double, has to say which it is: the deleted
// templates turn every such call into a compile error.
//
// Number patterns: 0 a required digit, # an optional one, . the decimal mark, a
// backslash makes the next character literal, text in double quotes is literal,
// anything else stands as it is. Rounds half to even on the shortest decimal text
// of the value. A minus sign goes right before the first digit.
QString FormatNumber(double value, QStringView pattern);
QString FormatNumber(float value, QStringView pattern);
template <class T>
QString FormatNumber(T value, QStringView pattern) = delete;
// FormatNumber's text for the plain patterns of the tables: `whole` required digits
// before the mark ("#0.00" has 1, "#.0000" none) and `decimals` after it, without the
// pattern walk. Near a tie it asks FormatNumber, whose decimal text decides.
class FixedNumber {
public:
    FixedNumber(int whole, int decimals);
    // Appends prefix (blanks) and the number, blanks in front up to width (as Formatta
    // does); to a QString, or to bytes in the files' code page.
    void Append(QString &out, double value, int width = 0, const char *prefix = "") const;
    void Append(QString &out, float value, int width = 0, const char *prefix = "") const;
    void Append(QByteArray &out, double value, int width = 0, const char *prefix = "") const;
    void Append(QByteArray &out, float value, int width = 0, const char *prefix = "") const;
    template <class Out, class T>
    void Append(Out &, T, int = 0, const char * = "") const = delete;
    // The bytes at p, which has room for kRoom; returns their end. Widths up to 32.
    static constexpr int kRoom = 400;  // the longest double, 309 digits, with decimals and blanks
    char *Write(char *p, double value, int width = 0, const char *prefix = "") const;
    char *Write(char *p, float value, int width = 0, const char *prefix = "") const;

private:
    template <class T>
    void AppendImpl(QString &out, T value, int width, const char *prefix) const;
    template <class T>
    char *WriteImpl(char *p, T value, int width, const char *prefix) const;
    // The text in ASCII with the mark at *markAt, or -1 when FormatNumber has to decide.
    template <class T>
    int Digits(T value, char *buf, int *markAt) const;
    int whole_, decimals_;
    QChar mark_;
    char markByte_;
    QString pattern_;
};
// Str: a leading blank for a non-negative number, a point as decimal mark.
QString Str(double value);
QString Str(float value);
QString Str(int32_t value);
QString Str(int64_t value);
template <class T>
QString Str(T value) = delete;
// Rounds to `decimals` places, half to even, on the value's shortest decimal text.
// A float is not taken: the double it widens to has other digits (0.35f is 0.3499...).
double RoundHalfEven(double value, int decimals);
template <class T>
T RoundHalfEven(T value, int decimals) = delete;
// The double that a 32-bit value's own shortest text reads as: 0.165f gives 0.165, not
// 0.16500000655651093, so that 64-bit fields holding it format and round as it reads.
// Narrowing the result gives the value back.
double Widen(float value);
// A number as a machine writes it in a data file: optional blanks, an optional sign,
// digits with a point as decimal mark, an optional exponent, optional blanks, and
// nothing else, whatever the regional settings. The nearest 32-bit value; false when
// the text is not such a number. Raises fault 6 when it is beyond the 32-bit range.
bool ParseFileNumber(const char *begin, const char *end, float *out);
// The leading-number reader: blanks, tabs and line feeds are skipped wherever they
// stand; a sign, digits, a point and an exponent are taken; reading stops at the
// first other character; no digits give 0.
double Val(QStringView text);
double Val(const char *begin, const char *end);
// A number a user typed: in the regional form first, then with a point or a comma
// as decimal mark. False when the text is not a number.
bool ParseNumber(QStringView text, double *out);
// Rounds to a 16-bit integer (half to even), raising fault 6 outside its range.
int16_t CInt(double value);
int32_t CLng(double value);

// Invalidates the cached regional forms (after QLocale::setDefault, in tests).
void RegionalChanged();

} // namespace fm
