#include "files/table_export.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/safe_file.h"

#include <cstring>

namespace fm {
namespace {
// A row is written in place at the end of the buffer, given room for its longest form.
class Row {
public:
    Row(const Row &) = delete;
    Row &operator=(const Row &) = delete;
    Row(QByteArray &out, qsizetype room) : out_(out), at_(out.size()) {
        out.resize(at_ + room);
        p_ = out.data() + at_;
    }
    ~Row() { out_.resize(p_ - out_.constData()); }
    Row &operator<<(const QByteArray &bytes) {
        std::memcpy(p_, bytes.constData(), size_t(bytes.size()));
        p_ += bytes.size();
        return *this;
    }
    Row &operator<<(const char *text) {
        const size_t n = std::strlen(text);
        std::memcpy(p_, text, n);
        p_ += n;
        return *this;
    }
    template <class T>
    void Number(const FixedNumber &f, T v, int width = 0, const char *prefix = "") {
        p_ = f.Write(p_, v, width, prefix);
    }

private:
    QByteArray &out_;
    qsizetype at_;
    char *p_;
};

// Rows go straight into the code page's bytes: the date texts come made, the numbers
// are digits.
template <class Fields>
bool Write(const char *procedure, const QString &fileName, const QString &heading, Fields fields) {
    return Trap(procedure, false, [&] {
        const MeasurementData &d = Data();
        const int32_t n = d.DataCount;
        if (d.DataX.size() < size_t(n) + 1 || d.DataValue.size() < size_t(n) + 1) Raise(err::Subscript);
        SafeFile file(fileName);
        file.Open();
        QByteArray out = ToCp1252(heading);
        out.reserve((1 << 20) + (1 << 12));
        DateTexts dates;
        for (int32_t i = 1; i <= n; ++i) {
            {
                // The date and the time are formed apart, so a sample at midnight shows its time too.
                const double date = d.SampleDate(i);
                const QByteArray &day = dates.ShortDate(date).bytes, &time = dates.LongTime(date).bytes;
                Row row(out, day.size() + time.size() + 4 * FixedNumber::kRoom + 16);
                row << day << " " << time;
                fields(row, d, i);
            }
            file.Spill(out);
        }
        file.Write(out);
        file.Commit();
        return true;
    });
}
} // namespace

bool SaveCsvFile(const QString &fileName) {
    const MeasurementData &d = Data();
    const QString crlf = QStringLiteral("\r\n");
    QString heading = ResString(3016) + QStringLiteral(";") + crlf;
    heading += ResString(3017) + QStringLiteral(": ") + d.ShortID.trimmed() + QStringLiteral(";") + crlf;
    heading += ResString(3018) + QStringLiteral(": ") + d.LongID.trimmed() + QStringLiteral(";") + crlf;
    heading += ResString(3019) + QStringLiteral(": ") + d.DataSource + QStringLiteral(";") + crlf;
    for (int n : {4050, 4015, 4016, 4017, 4018}) heading += ResString(n) + QStringLiteral(";");
    heading += crlf;
    const FixedNumber f(0, 4);
    return Write("SaveCsvFile", fileName, heading, [&f](Row &row, const MeasurementData &m, int32_t i) {
        row << ";";
        // Each field as the type it is held in: the axes are floats, the resultant a double.
        for (const float v : {m.DataX[size_t(i)], m.DataY[size_t(i)], m.DataZ[size_t(i)]}) {
            row.Number(f, v);
            row << ";";
        }
        row.Number(f, m.DataValue[size_t(i)]);
        row << ";\r\n";
    });
}

bool SaveFileTxt(const QString &fileName) {
    const FixedNumber f(1, 2);
    return Write("SaveFileTxt", fileName, QString(), [&f](Row &row, const MeasurementData &m, int32_t i) {
        row << "\t";
        row.Number(f, m.DataX[size_t(i)], 8);
        for (const float v : {m.DataY[size_t(i)], m.DataZ[size_t(i)]}) {
            row << "\t";
            row.Number(f, v, 8, "  ");
        }
        row << "\t";
        row.Number(f, m.DataValue[size_t(i)], 8, "  ");
        row << "\r\n";
    });
}

bool SaveTable(const QString &fileName, int filterIndex) {
    return filterIndex == 1 ? SaveCsvFile(fileName) : SaveFileTxt(fileName);
}

} // namespace fm
