#include "shell/data_list.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/safe_file.h"
#include "shell/info_model.h"

namespace fm {

DataList::DataList(bool chronological) : chronological_(chronological || !ValueOrderAvailable()) {
    const MeasurementData &d = Data();
    int n = 0;
    heading_[n++] = ResString(3016);
    heading_[n++] = ResString(3017) + QStringLiteral(": ") + d.ShortID.trimmed();
    heading_[n++] = ResString(3018) + QStringLiteral(": ") + d.LongID.trimmed();
    heading_[n++] = ResString(3019) + QStringLiteral(": ") + d.DataSource;
    heading_[n++] = QStringLiteral("         Mediana dei dati :") + FormatNumber(d.DataMedian, u"#0.00") + QStringLiteral("(uT)");
    if (d.DataIsCsv)
        heading_[n++] = ResString(45) + QLatin1Char(' ') + FormatNumber(d.AuxMin, u"#0.00 ") + ResString(46) +
                        QLatin1Char(' ') + FormatNumber(d.AuxMax, u"#0.00 ") + ResString(47) + QLatin1Char(' ') +
                        FormatNumber(d.AuxMean, u"#0.00 ");
    heading_[n++] = ResString(3020) + (d.DataIsCsv ? ResString(3050) : QString());
    heading_[n++] = QString();
    headingLines_ = n;
    if (!chronological_) {
        std::vector<int32_t> marks;
        for (int32_t i = 1; i <= d.DataCount; ++i)
            if (d.DataValue[size_t(i)] < 0) marks.push_back(i);
        byValue_.assign(size_t(d.DataCount) + 1, 0);
        size_t next = 0;
        for (int32_t r = 1; r <= d.DataCount; ++r) {
            const int32_t k = d.SortedIndex[size_t(r)];
            byValue_[size_t(r)] = k > 0 ? k : next < marks.size() ? marks[next++] : 0;
        }
    }
}

bool DataList::ValueOrderAvailable() {
    const MeasurementData &d = Data();
    return !d.DataIsCsv && d.SortedIndex.size() == size_t(d.DataCount) + 1 && d.MedianPos >= 1 &&
           d.MedianPos <= d.DataCount;
}

int DataList::HeadingLines() const { return headingLines_; }

int64_t DataList::LineCount() const { return headingLines_ + int64_t(Data().DataCount); }

QString DataList::Row(int32_t r) const {
    const MeasurementData &d = Data();
    const int32_t k = chronological_ ? r : byValue_[size_t(r)];
    if (k < 1 || k > d.DataCount) return QString();
    const double date = d.SampleDate(k);
    QString row = chronological_ ? ShortDate(date).trimmed() + QLatin1Char(' ') + LongTime(date).trimmed()
                                 : GeneralDate(date);
    const float x = d.DataX[size_t(k)], y = d.DataY[size_t(k)], z = d.DataZ[size_t(k)];
    const double v = d.DataValue[size_t(k)];
    if (x < 0 || y < 0 || z < 0 || v < 0) return row + QStringLiteral(" NOT AVAILABLE - OPERATING GSM");
    row += Formatta(FormatNumber(x, u"#0.00"), 8);
    row += Formatta(FormatNumber(y, u"  #0.00"), 8);
    row += Formatta(FormatNumber(z, u"  #0.00"), 8);
    row += Formatta(FormatNumber(v, u"  #0.00"), 8);
    return row;
}

QString DataList::Line(int64_t line) const {
    if (line < 0 || line >= LineCount()) return QString();
    if (line < headingLines_) return heading_[line];
    return Row(int32_t(line - headingLines_ + 1));
}

int64_t DataList::MedianLine() const {
    const MeasurementData &d = Data();
    if (!ValueOrderAvailable()) return -1;
    const int32_t row = chronological_ ? d.SortedIndex[size_t(d.MedianPos)] : d.MedianPos;
    return row >= 1 ? headingLines_ + row - 1 : -1;
}

int64_t DataList::LineOfSample(int32_t sample) const { return headingLines_ + sample - 1; }

int32_t DataList::SampleOfLine(int64_t line) const {
    if (line < headingLines_ || line >= LineCount()) return 0;
    const int32_t r = int32_t(line - headingLines_ + 1);
    return chronological_ ? r : byValue_[size_t(r)];
}

QByteArray DataList::PlainText() const {
    QByteArray out;
    const int64_t n = LineCount();
    out.reserve(int(qMin<int64_t>(n * 60, 1 << 28)));
    for (int64_t i = 0; i < n; ++i) out += ToCp1252(Line(i)) + "\r\n";
    return out;
}

bool SalvaDati(const DataList &list, const QString &path) {
    return Trap("SalvaDati", false, [&] {
        SafeFile file(path);
        file.Open();
        file.Write(list.PlainText());
        file.Commit();
        return true;
    });
}

} // namespace fm
