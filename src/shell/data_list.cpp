#include "shell/data_list.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/safe_file.h"
#include "shell/info_model.h"

#include <algorithm>

namespace fm {

DataList::DataList(bool chronological)
    : chronological_(chronological || !ValueOrderAvailable()), dates_(chronological_) {
    const MeasurementData &d = Data();
    int n = 0;
    heading_[n++] = ResString(3016);
    heading_[n++] = ResString(3017) + QStringLiteral(": ") + d.ShortID.trimmed();
    heading_[n++] = ResString(3018) + QStringLiteral(": ") + d.LongID.trimmed();
    heading_[n++] = ResString(3019) + QStringLiteral(": ") + d.DataSource;
    const QString median = ValueOrderAvailable() ? FormatNumber(d.DataMedian, u"#0.00") : QStringLiteral("---");
    heading_[n++] = QStringLiteral("         Mediana dei dati :") + median + QStringLiteral("(uT)");
    if (d.DataIsCsv)
        heading_[n++] = ResString(45) + QLatin1Char(' ') + FormatNumber(d.AuxMin, u"#0.00 ") + ResString(46) +
                        QLatin1Char(' ') + FormatNumber(d.AuxMax, u"#0.00 ") + ResString(47) + QLatin1Char(' ') +
                        FormatNumber(d.AuxMean, u"#0.00 ");
    heading_[n++] = ResString(3020) + (d.DataIsCsv ? ResString(3050) : QString());
    heading_[n++] = QString();
    headingLines_ = n;
    // Only samples that every array holds; the copies are cut to them.
    const size_t held = std::min({d.DataX.size(), d.DataY.size(), d.DataZ.size(), d.DataValue.size()});
    count_ = held == 0 ? 0 : int32_t(std::min<size_t>(size_t(std::max(d.DataCount, 0)), held - 1));
    const auto upTo = [this](const auto &v) { return std::vector(v.begin(), v.begin() + count_ + 1); };
    if (count_ > 0) {
        x_ = upTo(d.DataX);
        y_ = upTo(d.DataY);
        z_ = upTo(d.DataZ);
        value_ = upTo(d.DataValue);
    }
    start_ = d.DataStart;
    step_ = d.DataStep;
    unit_ = d.DataStepUnit;
    if (!chronological_) {
        std::vector<int32_t> marks;
        for (int32_t i = 1; i <= count_; ++i)
            if (value_[size_t(i)] < 0) marks.push_back(i);
        byValue_.assign(size_t(count_) + 1, 0);
        size_t next = 0;
        for (int32_t r = 1; r <= count_; ++r) {
            const int32_t k = d.SortedIndex[size_t(r)];
            byValue_[size_t(r)] = k > 0 && k <= count_ ? k : next < marks.size() ? marks[next++] : 0;
        }
    }
    if (ValueOrderAvailable() && d.MedianPos <= count_) {
        const int32_t row = chronological_ ? d.SortedIndex[size_t(d.MedianPos)] : d.MedianPos;
        if (row >= 1 && row <= count_) medianLine_ = headingLines_ + row - 1;
    }
}

bool DataList::ValueOrderAvailable() {
    const MeasurementData &d = Data();
    return !d.DataIsCsv && d.SortedIndex.size() == size_t(d.DataCount) + 1 && d.MedianPos >= 1 &&
           d.MedianPos <= d.DataCount;
}

int DataList::HeadingLines() const { return headingLines_; }

int64_t DataList::LineCount() const {
    return headingLines_ + int64_t(count_);
}

namespace {
void Put(QString &out, const DateTexts::Text &t) {
    out += t.text;
}
void Put(QByteArray &out, const DateTexts::Text &t) {
    out += t.bytes;
}
void Put(QString &out, const char *text) {
    out += QLatin1String(text);
}
void Put(QByteArray &out, const char *text) {
    out += text;
}
}  // namespace

template <class Out>
void DataList::AppendRow(int32_t r, Out &row, int pad) const {
    if (r < 1 || r > count_) return;
    const int32_t k = chronological_ ? r : byValue_[size_t(r)];
    if (k < 1 || k > count_) return;
    const double date = DateAdd(unit_, double(k - 1) * step_, start_);
    const qsizetype begin = row.size();
    // By time the date texts come trimmed (see the constructor); by value in the general form.
    Put(row, dates_.ShortDate(date));
    if (chronological_ || dates_.HasTime(date)) {
        Put(row, " ");
        Put(row, dates_.LongTime(date));
    }
    while (row.size() - begin < pad) Put(row, " ");
    const float x = x_[size_t(k)], y = y_[size_t(k)], z = z_[size_t(k)];
    const double v = value_[size_t(k)];
    if (x < 0 || y < 0 || z < 0 || v < 0) {
        Put(row, " NOT AVAILABLE - OPERATING GSM");
        return;
    }
    number_.Append(row, x, 8);
    number_.Append(row, y, 8, "  ");
    number_.Append(row, z, 8, "  ");
    number_.Append(row, v, 8, "  ");
}

QString DataList::Line(int64_t line) const {
    QString text;
    AppendLine(line, text);
    return text;
}

void DataList::AppendLine(int64_t line, QString &out) const {
    if (line < 0 || line >= LineCount()) return;
    if (line < headingLines_)
        out += heading_[line];
    else
        AppendRow(int32_t(line - headingLines_ + 1), out);
}

void DataList::AppendPaddedLine(int64_t line, QString &out) const {
    if (line >= headingLines_ && line < LineCount())
        AppendRow(int32_t(line - headingLines_ + 1), out, DateWidth());
    else
        AppendLine(line, out);
}

int DataList::DateWidth() const {
    if (dateWidth_ < 0)
        dateWidth_ =
            count_ < 1 ? 0 : dates_.Widest(start_, DateAdd(unit_, double(count_ - 1) * step_, start_));
    return dateWidth_;
}

QString DataList::Text(int64_t first, int64_t last) const {
    QString out;
    first = std::max<int64_t>(first, 0);
    last = std::min(last, LineCount() - 1);
    if (last < first) return out;
    out.reserve(qsizetype((last - first + 1) * 64));
    for (int64_t i = first; i <= last; ++i) {
        AppendLine(i, out);
        out += QLatin1Char('\n');
    }
    return out;
}

int64_t DataList::MedianLine() const {
    return medianLine_;
}

int64_t DataList::LineOfSample(int32_t sample) const { return headingLines_ + sample - 1; }

int32_t DataList::SampleOfLine(int64_t line) const {
    if (line < headingLines_ || line >= LineCount()) return 0;
    const int32_t r = int32_t(line - headingLines_ + 1);
    return chronological_ ? r : byValue_[size_t(r)];
}

void DataList::WriteText(const std::function<void(QByteArray &)> &sink) const {
    QByteArray out;
    out.reserve((1 << 20) + 4096);
    const int64_t n = LineCount();
    for (int64_t i = 0; i < n; ++i) {
        if (i < headingLines_)
            out += ToCp1252(heading_[i]);
        else
            AppendRow(int32_t(i - headingLines_ + 1), out);
        out += "\r\n";
        if (out.size() >= (1 << 20)) sink(out);
    }
    sink(out);
}

QByteArray DataList::PlainText() const {
    QByteArray all;
    WriteText([&all](QByteArray &part) {
        all += part;
        part.resize(0);
    });
    return all;
}

bool SalvaDati(const DataList &list, const QString &path) {
    return Trap("SalvaDati", false, [&] {
        SafeFile file(path);
        file.Open();
        list.WriteText([&file](QByteArray &part) {
            file.Write(part);
            part.resize(0);
        });
        file.Commit();
        return true;
    });
}

} // namespace fm
