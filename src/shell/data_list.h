#pragma once
// The text of the data list: a heading, then one row a sample, by time or by value.
// Rows are made when asked for, so a list of a million samples costs nothing to open.
// The list keeps its own copy of the figures and dates it shows, as a text control keeps
// its text: a load that fails half-way leaves the record part new, and the list on show
// must still read as it was made.
#include "core/regional.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

namespace fm {

class DataList {
public:
    explicit DataList(bool chronological);
    bool Chronological() const { return chronological_; }
    // The order by value needs the sort of the data set; imports without it list by time only.
    static bool ValueOrderAvailable();
    int HeadingLines() const;  // with the blank line that closes the heading
    int64_t LineCount() const;
    QString Line(int64_t line) const;
    // Line's text appended to out: no text of its own for each of a million lines.
    void AppendLine(int64_t line, QString &out) const;
    // The same with the date column padded to DateWidth(), as the list window shows it
    // so the figures stand in columns whatever the hour; the text saved keeps its own.
    void AppendPaddedLine(int64_t line, QString &out) const;
    int DateWidth() const;
    // Lines first..last (both included) as the saved text has them, one "\n" after each.
    QString Text(int64_t first, int64_t last) const;
    // The line of the median's row, or -1.
    int64_t MedianLine() const;
    // The line of sample s (1-based) in the order by time.
    int64_t LineOfSample(int32_t sample) const;
    // The sample shown on a line, or 0 for a heading line.
    int32_t SampleOfLine(int64_t line) const;
    // The whole list as plain text with CR LF, in the Windows-1252 code page.
    QByteArray PlainText() const;
    // The same a megabyte at a time: sink takes each part and empties it.
    void WriteText(const std::function<void(QByteArray &)> &sink) const;

private:
    template <class Out>  // QString, or QByteArray in the files' code page
    void AppendRow(int32_t position, Out &out, int pad = 0) const;
    int32_t count_ = 0;
    double start_ = 0;
    int32_t step_ = 0;
    QString unit_;
    std::vector<float> x_, y_, z_;
    std::vector<double> value_;
    int64_t medianLine_ = -1;
    // By value: the sample of each row. Samples without data sort as index 0; they are
    // given back their own numbers here, in time order.
    std::vector<int32_t> byValue_;
    QString heading_[8];
    int headingLines_ = 0;
    bool chronological_;
    mutable DateTexts dates_;
    FixedNumber number_{1, 2};
    mutable int dateWidth_ = -1;
};

// Saves the list's plain text under path, replacing it (the list window's save).
bool SalvaDati(const DataList &list, const QString &path);

} // namespace fm
