#include "core/regional.h"

#include "core/cp1252.h"
#include "core/fault.h"

#include <QRegularExpression>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace fm {
namespace {

constexpr int64_t kDaySeconds = 86400;
constexpr int64_t kDayMs = kDaySeconds * 1000;
const QDate kEpoch(1899, 12, 30);

// interval.toLower() == name without the lowered copy: the tables add a date for every
// row. No other character lowers to one of the interval letters.
bool IntervalIs(const QString &interval, const char *name) {
    const qsizetype n = qsizetype(std::strlen(name));
    if (interval.size() != n) return false;
    for (qsizetype k = 0; k < n; ++k) {
        char16_t c = interval[k].unicode();
        if (c >= 'A' && c <= 'Z') c = char16_t(c + ('a' - 'A'));
        if (c != char16_t(name[k])) return false;
    }
    return true;
}

// Linear milliseconds since the epoch; OLE dates before it keep a forward fraction.
int64_t ToLinearMs(double d) {
    const double day = std::trunc(d);
    const double frac = std::fabs(d - day);
    return int64_t(day) * kDayMs + std::llround(frac * double(kDayMs));
}

double FromLinearMs(int64_t ms) {
    int64_t day = ms / kDayMs;
    int64_t rest = ms % kDayMs;
    if (rest < 0) {
        rest += kDayMs;
        --day;
    }
    const double frac = double(rest) / double(kDayMs);
    return day >= 0 ? double(day) + frac : double(day) - frac;
}

struct Forms {
    bool ready = false;
    QString shortDate, longTime;
    QString order;  // "dmy", "mdy" or "ymd"
};

Forms &Cache() {
    static Forms forms;
    return forms;
}

// Drops the time-zone field of a Qt time format, with the blank before it.
QString WithoutZone(QString fmt) {
    QString out;
    bool quoted = false;
    for (int i = 0; i < fmt.size(); ++i) {
        const QChar c = fmt[i];
        if (c == QLatin1Char('\'')) quoted = !quoted;
        if (!quoted && c == QLatin1Char('t')) continue;
        out += c;
    }
    return out.trimmed();
}

// Four-digit year in a Qt date format.
QString FourDigitYear(QString fmt) {
    static const QRegularExpression years(QStringLiteral("y+"));
    fmt.replace(years, QStringLiteral("yyyy"));
    return fmt;
}

const Forms &Regional() {
    Forms &f = Cache();
    if (f.ready) return f;
    const QLocale loc;
    f.shortDate = FourDigitYear(loc.dateFormat(QLocale::ShortFormat));
    f.longTime = WithoutZone(loc.timeFormat(QLocale::LongFormat));
    const int d = f.shortDate.indexOf(QLatin1Char('d'));
    const int m = f.shortDate.indexOf(QLatin1Char('M'));
    const int y = f.shortDate.indexOf(QLatin1Char('y'));
    if (y >= 0 && y < m && y < d) f.order = QStringLiteral("ymd");
    else if (m >= 0 && m < d) f.order = QStringLiteral("mdy");
    else f.order = QStringLiteral("dmy");
    f.ready = true;
    return f;
}

int FullYear(int y, int digits) {
    if (digits <= 2) return y < 30 ? 2000 + y : 1900 + y;
    return y;
}

std::optional<QDate> DateFromFields(const int v[3], const int len[3], const QString &order) {
    int day = 0, month = 0, year = 0, ylen = 0;
    for (int i = 0; i < 3; ++i) {
        switch (order[i].unicode()) {
        case 'd': day = v[i]; break;
        case 'm': month = v[i]; break;
        default: year = v[i]; ylen = len[i]; break;
        }
    }
    const QDate date(FullYear(year, ylen), month, day);
    if (!date.isValid()) return std::nullopt;
    return date;
}

std::optional<int> ParseTime(const QRegularExpressionMatch &m, int first) {
    const int h = m.captured(first).toInt();
    const int mi = m.captured(first + 1).toInt();
    const int s = m.capturedLength(first + 2) ? m.captured(first + 2).toInt() : 0;
    QString ampm = m.captured(first + 3).toUpper().remove(QLatin1Char('.'));
    int hour = h;
    if (!ampm.isEmpty()) {
        const QLocale loc;
        const bool pm = ampm == QLatin1String("PM") || ampm == loc.pmText().toUpper();
        const bool am = ampm == QLatin1String("AM") || ampm == loc.amText().toUpper();
        if ((!pm && !am) || h < 1 || h > 12) return std::nullopt;
        hour = h % 12 + (pm ? 12 : 0);
    }
    if (hour > 23 || mi > 59 || s > 59) return std::nullopt;
    return hour * 3600 + mi * 60 + s;
}

// The digits of |value| with the decimal point at `point` (digits before it).
struct Decimal {
    std::string digits;  // no leading zeros except a lone "0"
    int point = 0;
    bool negative = false;
};

template <class T>
Decimal ToDecimal(T value) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed);
    std::string s(buf, res.ptr);
    Decimal d;
    if (!s.empty() && s[0] == '-') {
        d.negative = true;
        s.erase(0, 1);
    }
    const auto dot = s.find('.');
    if (dot == std::string::npos) {
        d.digits = s;
        d.point = int(s.size());
    } else {
        d.digits = s.substr(0, dot) + s.substr(dot + 1);
        d.point = int(dot);
    }
    return d;
}

// Rounds to `decimals` places, half to even; returns integer and fraction digit texts.
void RoundDecimal(Decimal &d, int decimals) {
    const int keep = d.point + decimals;
    if (keep < 0) {
        d.digits = "0";
        d.point = 1;
        return;
    }
    if (int(d.digits.size()) <= keep) {
        d.digits.append(size_t(keep - int(d.digits.size())), '0');
        return;
    }
    const char next = d.digits[size_t(keep)];
    bool tail = false;
    for (size_t i = size_t(keep) + 1; i < d.digits.size(); ++i) tail |= d.digits[i] != '0';
    std::string kept = d.digits.substr(0, size_t(keep));
    const bool lastOdd = !kept.empty() && ((kept.back() - '0') % 2 == 1);
    const bool up = next > '5' || (next == '5' && (tail || lastOdd));
    if (up) {
        int i = int(kept.size()) - 1;
        while (i >= 0 && kept[size_t(i)] == '9') kept[size_t(i--)] = '0';
        if (i >= 0) ++kept[size_t(i)];
        else {
            kept.insert(kept.begin(), '1');
            ++d.point;
        }
    }
    d.digits = kept;
}

template <class T>
QString FormatImpl(T value, QStringView pattern) {
    if (std::isnan(double(value))) return QStringLiteral("NaN");
    // Only the first section of a pattern with sections is in use here.
    int intRequired = 0, intPlaces = 0, fracRequired = 0, fracPlaces = 0;
    bool inFraction = false, hasPoint = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == QLatin1Char('\\')) {
            ++i;
        } else if (c == QLatin1Char('"')) {
            while (++i < pattern.size() && pattern[i] != QLatin1Char('"')) {}
        } else if (c == QLatin1Char('.') && !hasPoint) {
            hasPoint = inFraction = true;
        } else if (c == QLatin1Char('0') || c == QLatin1Char('#')) {
            const bool req = c == QLatin1Char('0');
            if (inFraction) {
                ++fracPlaces;
                if (req) fracRequired = fracPlaces;
            } else {
                ++intPlaces;
                if (req) ++intRequired;
            }
        }
    }
    Decimal d = ToDecimal(value);
    RoundDecimal(d, fracPlaces);
    std::string intDigits = d.digits.substr(0, size_t(std::max(d.point, 0)));
    std::string fracDigits = d.digits.substr(size_t(std::max(d.point, 0)));
    while (intDigits.size() > 1 && intDigits[0] == '0') intDigits.erase(0, 1);
    if (intDigits == "0") intDigits.clear();
    while (int(fracDigits.size()) > fracRequired && !fracDigits.empty() && fracDigits.back() == '0')
        fracDigits.pop_back();
    const bool allZero = intDigits.find_first_not_of('0') == std::string::npos &&
                         fracDigits.find_first_not_of('0') == std::string::npos;
    if (int(intDigits.size()) < intRequired)
        intDigits.insert(0, size_t(intRequired - int(intDigits.size())), '0');
    // Digits beyond the placeholders stand at the first one.
    const int extra = int(intDigits.size()) - intPlaces;

    QString out;
    bool signDone = !(d.negative && !allZero);
    int intSeen = 0, fracSeen = 0;
    bool fraction = false;
    const QChar mark = DecimalMark();
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == QLatin1Char('\\')) {
            if (++i < pattern.size()) out += pattern[i];
        } else if (c == QLatin1Char('"')) {
            while (++i < pattern.size() && pattern[i] != QLatin1Char('"')) out += pattern[i];
        } else if (c == QLatin1Char('.') && !fraction && hasPoint) {
            fraction = true;
            if (!signDone) {
                out += QLatin1Char('-');
                signDone = true;
            }
            if (!fracDigits.empty() || fracRequired > 0) out += mark;
        } else if (c == QLatin1Char('0') || c == QLatin1Char('#')) {
            if (!signDone) {
                out += QLatin1Char('-');
                signDone = true;
            }
            if (fraction) {
                if (fracSeen < int(fracDigits.size())) out += QLatin1Char(fracDigits[size_t(fracSeen)]);
                ++fracSeen;
            } else {
                // Placeholder k of intPlaces maps to digit k + extra of intDigits.
                const int first = intSeen == 0 ? 0 : intSeen + extra;
                const int last = intSeen + extra;
                for (int k = std::max(first, 0); k <= last; ++k)
                    if (k >= 0 && k < int(intDigits.size())) out += QLatin1Char(intDigits[size_t(k)]);
                ++intSeen;
            }
        } else {
            out += c;
        }
    }
    if (!signDone) out.prepend(QLatin1Char('-'));
    return out;
}

} // namespace

// ---- Dates -----------------------------------------------------------------

double DateFromParts(int year, int month, int day, int hour, int minute, int second) {
    const QDate date(year, month, day);
    const int64_t days = kEpoch.daysTo(date);
    const int64_t ms = (int64_t(hour) * 3600 + minute * 60 + second) * 1000;
    return FromLinearMs(days * kDayMs + ms);
}

double DateFromDateTime(const QDateTime &dt) {
    const int64_t days = kEpoch.daysTo(dt.date());
    return FromLinearMs(days * kDayMs + dt.time().msecsSinceStartOfDay());
}

QDateTime DateToDateTime(double oleDate) {
    const int64_t ms = ToLinearMs(oleDate);
    int64_t day = ms / kDayMs, rest = ms % kDayMs;
    if (rest < 0) {
        rest += kDayMs;
        --day;
    }
    // Naive date-times: UTC has no gaps or folds and asks no time-zone database.
    return QDateTime(kEpoch.addDays(day), QTime::fromMSecsSinceStartOfDay(int(rest)), Qt::UTC);
}

bool IsDateInterval(const QString &i) {
    static const QStringList known = {QStringLiteral("s"), QStringLiteral("n"), QStringLiteral("h"),
                                      QStringLiteral("d"), QStringLiteral("w"), QStringLiteral("y"),
                                      QStringLiteral("m"), QStringLiteral("q"), QStringLiteral("ww"),
                                      QStringLiteral("yyyy")};
    return known.contains(i.toLower());
}

double DateAdd(const QString &interval, double number, double date) {
    const auto is = [&interval](const char *name) { return IntervalIs(interval, name); };
    const int64_t n = std::llround(number);
    int64_t unitMs = 0;
    if (is("s"))
        unitMs = 1000;
    else if (is("n"))
        unitMs = 60 * 1000;
    else if (is("h"))
        unitMs = 3600 * 1000;
    else if (is("d") || is("w") || is("y"))
        unitMs = kDayMs;
    else if (is("ww"))
        unitMs = 7 * kDayMs;
    if (unitMs) {
        const int64_t ms = ToLinearMs(date) + n * unitMs;
        const double result = FromLinearMs(ms);
        if (result < -657434.0 || result >= 2958466.0) Raise(err::InvalidCall);
        return result;
    }
    int months = 0;
    if (is("m"))
        months = int(n);
    else if (is("q"))
        months = int(n) * 3;
    else if (is("yyyy"))
        months = int(n) * 12;
    else Raise(err::InvalidCall);
    const QDateTime dt = DateToDateTime(date);
    const QDate moved = dt.date().addMonths(months);
    if (!moved.isValid() || moved.year() < 100 || moved.year() > 9999) Raise(err::InvalidCall);
    return DateFromDateTime(QDateTime(moved, dt.time()));
}

int64_t DateDiff(const QString &interval, double d1, double d2) {
    const QString i = interval.toLower();
    auto floorDiv = [](int64_t a, int64_t b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); };
    const int64_t a = ToLinearMs(d1), b = ToLinearMs(d2);
    if (i == QLatin1String("s")) return floorDiv(b, 1000) - floorDiv(a, 1000);
    if (i == QLatin1String("n")) return floorDiv(b, 60000) - floorDiv(a, 60000);
    if (i == QLatin1String("h")) return floorDiv(b, 3600000) - floorDiv(a, 3600000);
    if (i == QLatin1String("d") || i == QLatin1String("y")) return floorDiv(b, kDayMs) - floorDiv(a, kDayMs);
    if (i == QLatin1String("w")) return (floorDiv(b, kDayMs) - floorDiv(a, kDayMs)) / 7;
    if (i == QLatin1String("ww")) return floorDiv(floorDiv(b, kDayMs) + 1, 7) - floorDiv(floorDiv(a, kDayMs) + 1, 7);
    const QDate x = DateToDateTime(d1).date(), y = DateToDateTime(d2).date();
    if (i == QLatin1String("m")) return (y.year() - x.year()) * 12 + (y.month() - x.month());
    if (i == QLatin1String("q")) return (y.year() - x.year()) * 4 + ((y.month() - 1) / 3 - (x.month() - 1) / 3);
    if (i == QLatin1String("yyyy")) return y.year() - x.year();
    Raise(err::InvalidCall);
}

namespace {
std::function<double()> &Clock() {
    static std::function<double()> clock;
    return clock;
}
} // namespace

void SetClock(std::function<double()> clock) { Clock() = std::move(clock); }

double Now() {
    if (Clock()) return Clock()();
    const QDateTime now = QDateTime::currentDateTime();
    return DateFromDateTime(QDateTime(now.date(), QTime(now.time().hour(), now.time().minute(), now.time().second())));
}

QString ShortDateFormat() { return Regional().shortDate; }
QString LongTimeFormat() { return Regional().longTime; }

QString ShortDate(double date) { return QLocale().toString(DateToDateTime(date).date(), Regional().shortDate); }

QString LongTime(double date) {
    const QTime t = DateToDateTime(date).time();
    return QLocale().toString(QTime(t.hour(), t.minute(), t.second()), Regional().longTime);
}

QString GeneralDate(double date) {
    const QDateTime dt = DateToDateTime(date);
    const QTime t = dt.time();
    const QLocale loc;
    QString text = loc.toString(dt.date(), Regional().shortDate);
    if (t.hour() || t.minute() || t.second())
        text += QLatin1Char(' ') + loc.toString(QTime(t.hour(), t.minute(), t.second()), Regional().longTime);
    return text;
}

void DateTexts::Split(double date) {
    const int64_t ms = ToLinearMs(date);
    day_ = ms / kDayMs;
    int64_t rest = ms % kDayMs;
    if (rest < 0) {
        rest += kDayMs;
        --day_;
    }
    second_ = rest / 1000;
}

DateTexts::Text DateTexts::Make(const QString &text) const {
    Text t{trimmed_ ? text.trimmed() : text, {}};
    t.bytes = ToCp1252(t.text);
    return t;
}

const DateTexts::Text &DateTexts::ShortDate(double date) {
    Split(date);
    if (!dayKnown_ || textDay_ != day_) {
        dayText_ = Make(QLocale().toString(kEpoch.addDays(day_), Regional().shortDate));
        textDay_ = day_;
        dayKnown_ = true;
    }
    return dayText_;
}

const DateTexts::Text &DateTexts::LongTime(double date) {
    Split(date);
    if (times_.empty()) {
        times_.resize(size_t(kDaySeconds));
        timeKnown_.assign(size_t(kDaySeconds), false);
    }
    const size_t s = size_t(second_);
    if (!timeKnown_[s]) {
        const int t = int(second_);
        times_[s] = Make(QLocale().toString(QTime(t / 3600, t / 60 % 60, t % 60), Regional().longTime));
        timeKnown_[s] = true;
    }
    return times_[s];
}

bool DateTexts::HasTime(double date) {
    Split(date);
    return second_ != 0;
}

QString DateTexts::General(double date) {
    QString text = ShortDate(date).text;
    if (HasTime(date)) text += QLatin1Char(' ') + LongTime(date).text;
    return text;
}

int DateTexts::Widest(double first, double last) {
    const QDate a = DateToDateTime(std::min(first, last)).date();
    const QDate b = DateToDateTime(std::max(first, last)).date();
    // Two-digit days, months and hours, noon and midnight: where the texts run longest.
    const int days[][2] = {{1, 1}, {10, 10}, {12, 28}, {a.month(), a.day()}, {b.month(), b.day()}};
    int widest = 0;
    for (int year : {a.year(), b.year()})
        for (const auto &md : days)
            for (int hour : {0, 1, 10, 11, 12, 13, 22, 23}) {
                const double date = DateFromParts(year, md[0], md[1], hour, 59, 59);
                const qsizetype day = ShortDate(date).text.size();
                widest = std::max(widest, int(day + 1 + LongTime(date).text.size()));
            }
    return widest;
}

bool ParseDate(QStringView input, double *out) {
    const QString text = input.trimmed().toString();
    if (text.isEmpty()) return false;
    // date [time]: the date in three numeric fields with one separator, the time
    // with ":" or "." (older Italian settings use the point), an optional AM/PM.
    static const QRegularExpression full(QStringLiteral(
        R"(^(\d{1,4})([/.\-])(\d{1,2})\2(\d{1,4})(?:(?:\s+|T)(\d{1,2})[:.](\d{1,2})(?:[:.](\d{1,2})(?:[.,]\d+)?)?\s*([^\s\d]+)?)?$)"));
    static const QRegularExpression timeOnly(QStringLiteral(
        R"(^(\d{1,2})[:.](\d{1,2})(?:[:.](\d{1,2}))?\s*([^\s\d]+)?$)"));
    QRegularExpressionMatch m = full.match(text);
    if (m.hasMatch()) {
        const int v[3] = {m.captured(1).toInt(), m.captured(3).toInt(), m.captured(4).toInt()};
        const int len[3] = {int(m.capturedLength(1)), int(m.capturedLength(3)), int(m.capturedLength(4))};
        int seconds = 0;
        if (m.capturedLength(5)) {
            const auto t = ParseTime(m, 5);
            if (!t) return false;
            seconds = *t;
        }
        QStringList orders{Regional().order};
        if (len[0] >= 3) orders = {QStringLiteral("ymd")};
        else
            for (const char *o : {"dmy", "mdy"})
                if (!orders.contains(QLatin1String(o))) orders << QLatin1String(o);
        for (const QString &order : orders) {
            if (const auto date = DateFromFields(v, len, order)) {
                if (out) *out = FromLinearMs(int64_t(kEpoch.daysTo(*date)) * kDayMs + int64_t(seconds) * 1000);
                return true;
            }
        }
        return false;
    }
    m = timeOnly.match(text);
    if (m.hasMatch()) {
        const auto t = ParseTime(m, 1);
        if (!t) return false;
        if (out) *out = double(*t) / double(kDaySeconds);
        return true;
    }
    // Forms with month names, as the locale writes them: our general form first.
    const QLocale loc;
    const QDateTime general = loc.toDateTime(text, Regional().shortDate + QLatin1Char(' ') + Regional().longTime);
    if (general.isValid()) {
        if (out) *out = DateFromDateTime(general);
        return true;
    }
    const QDate shortOnly = loc.toDate(text, Regional().shortDate);
    if (shortOnly.isValid()) {
        if (out) *out = DateFromParts(shortOnly.year(), shortOnly.month(), shortOnly.day());
        return true;
    }
    for (const auto fmt : {QLocale::LongFormat, QLocale::ShortFormat}) {
        const QDateTime dt = loc.toDateTime(text, fmt);
        if (dt.isValid()) {
            if (out) *out = DateFromDateTime(dt);
            return true;
        }
        const QDate d = loc.toDate(text, fmt);
        if (d.isValid()) {
            if (out) *out = DateFromParts(d.year(), d.month(), d.day());
            return true;
        }
    }
    return false;
}

// ---- Numbers ---------------------------------------------------------------

QChar DecimalMark() {
    const QString mark = QLocale().decimalPoint();
    return mark.isEmpty() ? QLatin1Char('.') : mark.at(0);
}

QString FormatNumber(double value, QStringView pattern) { return FormatImpl(value, pattern); }
QString FormatNumber(float value, QStringView pattern) { return FormatImpl(value, pattern); }

FixedNumber::FixedNumber(int whole, int decimals)
    : whole_(whole),
      decimals_(decimals),
      mark_(DecimalMark()),
      markByte_(ToCp1252(QString(mark_)).at(0)),
      pattern_(QLatin1Char('#') + QString(whole, QLatin1Char('0')) + QLatin1Char('.') +
               QString(decimals, QLatin1Char('0'))) {}

template <class T>
int FixedNumber::Digits(T value, char *buf, int *markAt) const {
    static const double scale[] = {1, 10, 100, 1e3, 1e4, 1e5, 1e6};
    if (decimals_ > 6) return -1;
    const double r = double(value) * scale[decimals_];
    if (!(std::fabs(r) < 1e12)) return -1;
    // A value's shortest text can lie up to its own spacing away from its binary value:
    // that close to a tie, only the text decides the rounding.
    const double offTie = std::fabs(std::fabs(r - std::trunc(r)) - 0.5);
    if (offTie <= 1e-3) return -1;
    const T a = std::fabs(value);
    if (offTie <= std::fabs(r) * 3e-7 &&
        offTie <= scale[decimals_] * double(std::nextafter(a, std::numeric_limits<T>::infinity()) - a))
        return -1;
    long long units = (long long)(r < 0 ? r - 0.5 : r + 0.5);
    const bool negative = units < 0;
    if (negative) units = -units;
    char digits[24];
    int n = 0;
    for (long long u = units; n <= decimals_ || u > 0; u /= 10) digits[n++] = char('0' + u % 10);
    // digits holds the number backwards, at least decimals + 1 of them.
    int len = 0;
    if (negative && units != 0) buf[len++] = '-';
    if (whole_ > 0 || n - decimals_ > 1 || digits[n - 1] != '0')
        for (int i = n - 1; i >= decimals_; --i) buf[len++] = digits[i];
    *markAt = -1;
    if (decimals_ > 0) {
        *markAt = len;
        buf[len++] = '.';
        for (int i = decimals_ - 1; i >= 0; --i) buf[len++] = digits[i];
    }
    return len;
}

template <class T>
void FixedNumber::AppendImpl(QString &out, T value, int width, const char *prefix) const {
    char buf[48];
    int markAt = -1;
    const int len = Digits(value, buf, &markAt);
    const QString slow = len < 0 ? FormatNumber(value, pattern_) : QString();
    const int prefixLen = int(std::strlen(prefix));
    for (int i = prefixLen + (len < 0 ? int(slow.size()) : len); i < width; ++i) out += QLatin1Char(' ');
    out += QLatin1String(prefix, prefixLen);
    if (len < 0) {
        out += slow;
    } else if (markAt < 0) {
        out += QLatin1String(buf, len);
    } else {
        out += QLatin1String(buf, markAt);
        out += mark_;
        out += QLatin1String(buf + markAt + 1, len - markAt - 1);
    }
}

template <class T>
char *FixedNumber::WriteImpl(char *p, T value, int width, const char *prefix) const {
    char buf[48];
    int markAt = -1;
    const int len = Digits(value, buf, &markAt);
    const QByteArray slow = len < 0 ? ToCp1252(FormatNumber(value, pattern_)) : QByteArray();
    const int prefixLen = int(std::strlen(prefix));
    const int textLen = len < 0 ? int(slow.size()) : len;
    Q_ASSERT(width <= 32 && prefixLen <= 8 && textLen <= 330);
    for (int i = prefixLen + textLen; i < width; ++i) *p++ = ' ';
    std::memcpy(p, prefix, size_t(prefixLen));
    p += prefixLen;
    if (len < 0) {
        std::memcpy(p, slow.constData(), size_t(textLen));
        return p + textLen;
    }
    std::memcpy(p, buf, size_t(len));
    if (markAt >= 0) p[markAt] = markByte_;
    return p + len;
}

char *FixedNumber::Write(char *p, double value, int width, const char *prefix) const {
    return WriteImpl(p, value, width, prefix);
}
char *FixedNumber::Write(char *p, float value, int width, const char *prefix) const {
    return WriteImpl(p, value, width, prefix);
}

void FixedNumber::Append(QString &out, double value, int width, const char *prefix) const {
    AppendImpl(out, value, width, prefix);
}
void FixedNumber::Append(QString &out, float value, int width, const char *prefix) const {
    AppendImpl(out, value, width, prefix);
}
void FixedNumber::Append(QByteArray &out, double value, int width, const char *prefix) const {
    char buf[kRoom];
    out.append(buf, Write(buf, value, width, prefix) - buf);
}
void FixedNumber::Append(QByteArray &out, float value, int width, const char *prefix) const {
    char buf[kRoom];
    out.append(buf, Write(buf, value, width, prefix) - buf);
}

namespace {
template <class T>
QString StrImpl(T value) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, value);
    std::string s(buf, res.ptr);
    const bool negative = !s.empty() && s[0] == '-';
    if (negative) s.erase(0, 1);
    if (s.size() > 1 && s[0] == '0' && s[1] == '.') s.erase(0, 1);
    return QString::fromLatin1((negative ? "-" : " ") + s);
}
} // namespace

QString Str(double value) { return StrImpl(value); }
QString Str(float value) { return StrImpl(value); }
QString Str(int32_t value) { return StrImpl(value); }
QString Str(int64_t value) { return StrImpl(value); }

double RoundHalfEven(double value, int decimals) {
    if (!std::isfinite(value)) return value;
    // Away from a tie the binary product rounds the same as the decimal text does.
    if (decimals >= 0 && decimals <= 6) {
        static const double scale[] = {1, 10, 100, 1e3, 1e4, 1e5, 1e6};
        const double r = value * scale[decimals];
        if (std::fabs(r) < 1e15) {
            const double frac = std::fabs(r - std::trunc(r));
            if (std::fabs(frac - 0.5) > 1e-6) return std::nearbyint(r) / scale[decimals];
        }
    }
    Decimal d = ToDecimal(value);
    RoundDecimal(d, decimals);
    std::string s = d.digits;
    if (d.point <= 0) s.insert(0, "0.");
    else if (d.point < int(s.size())) s.insert(size_t(d.point), ".");
    double result = 0;
    std::from_chars(s.data(), s.data() + s.size(), result);
    return d.negative ? -result : result;
}

double Widen(float value) {
    char buf[32];
    const auto res = std::to_chars(buf, buf + sizeof buf, value);
    double d = 0;
    std::from_chars(buf, res.ptr, d);
    // A text on the very edge between two floats would narrow to the other one.
    return float(d) == value ? d : double(value);
}

bool ParseFileNumber(const char *begin, const char *end, float *out) {
    while (begin < end && (*begin == ' ' || *begin == '\t')) ++begin;
    while (end > begin && (end[-1] == ' ' || end[-1] == '\t')) --end;
    const bool plus = begin < end && *begin == '+';
    if (plus) ++begin;  // from_chars takes no '+'
    const char *digits = !plus && begin < end && *begin == '-' ? begin + 1 : begin;
    // from_chars also reads "inf" and "nan", which no data file writes.
    if (digits == end || !((*digits >= '0' && *digits <= '9') || *digits == '.')) return false;
    float v = 0;
    const auto res = std::from_chars(begin, end, v, std::chars_format::general);
    if (res.ptr != end) return false;
    if (res.ec == std::errc::result_out_of_range) {
        // Too small to hold is 0, as the platform's parser gives; too large overflows.
        const std::string_view text(begin, size_t(end - begin));
        double wide = 0;
        const bool wideOk = std::from_chars(begin, end, wide, std::chars_format::general).ec == std::errc();
        const bool tiny = wideOk ? std::fabs(wide) < 1
                                 : text.find("e-") != text.npos || text.find("E-") != text.npos;
        if (!tiny) Raise(err::Overflow);
        v = std::signbit(wide) ? -0.0f : 0.0f;
    } else if (res.ec != std::errc()) {
        return false;
    }
    *out = v;
    return true;
}

double Val(const char *begin, const char *end) {
    std::string s;
    s.reserve(size_t(end - begin));
    bool digits = false, point = false, exponent = false, expDigits = false;
    for (const char *p = begin; p < end; ++p) {
        const char c = *p;
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
        if (c >= '0' && c <= '9') {
            (exponent ? expDigits : digits) = true;
            s += c;
        } else if ((c == '+' || c == '-') && (s.empty() || (exponent && (s.back() == 'e')))) {
            if (c == '-') s += c;
        } else if (c == '.' && !point && !exponent) {
            point = true;
            s += c;
        } else if ((c == 'e' || c == 'E' || c == 'd' || c == 'D') && digits && !exponent) {
            exponent = true;
            s += 'e';
        } else {
            break;
        }
    }
    if (!digits) return 0;
    if (exponent && !expDigits) {
        while (!s.empty() && (s.back() == 'e' || s.back() == '-')) s.pop_back();
    }
    double v = 0;
    const char *first = s.data();
    // from_chars takes no leading '+', and we dropped it above already.
    auto res = std::from_chars(first, first + s.size(), v);
    if (res.ec == std::errc::result_out_of_range) Raise(err::Overflow);
    return v;
}

double Val(QStringView text) {
    const QByteArray latin = text.toLatin1();
    return Val(latin.constData(), latin.constData() + latin.size());
}

bool ParseNumber(QStringView text, double *out) {
    const QString t = text.trimmed().toString();
    bool ok = false;
    double v = QLocale().toDouble(t, &ok);
    if (!ok) v = QLocale::c().toDouble(QString(t).replace(QLatin1Char(','), QLatin1Char('.')), &ok);
    if (ok && out) *out = v;
    return ok;
}

int16_t CInt(double value) {
    const double r = std::nearbyint(value);  // the default rounding mode is half to even
    if (!(r >= -32768.0 && r <= 32767.0)) Raise(err::Overflow);
    return int16_t(r);
}

int32_t CLng(double value) {
    const double r = std::nearbyint(value);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) Raise(err::Overflow);
    return int32_t(r);
}

void RegionalChanged() { Cache() = Forms{}; }

} // namespace fm
