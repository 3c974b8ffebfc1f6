#include "files/table_export.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/safe_file.h"

namespace fm {
namespace {
// The date and the time are formed apart, so a sample at midnight shows its time too.
void When(DateTexts &dates, const MeasurementData &d, int32_t i, QString &out) {
    const double date = d.SampleDate(i);
    out += dates.ShortDate(date);
    out += QLatin1Char(' ');
    out += dates.LongTime(date);
}

// Rows are appended to a text that goes to the code page a block at a time.
template <class Row>
bool Write(const char *procedure, const QString &fileName, const QString &heading, Row row) {
    return Trap(procedure, false, [&] {
        const MeasurementData &d = Data();
        const int32_t n = d.DataCount;
        if (d.DataX.size() < size_t(n) + 1 || d.DataValue.size() < size_t(n) + 1) Raise(err::Subscript);
        SafeFile file(fileName);
        file.Open();
        QByteArray out = ToCp1252(heading);
        QString text;
        DateTexts dates;
        for (int32_t i = 1; i <= n; ++i) {
            row(dates, d, i, text);
            if (text.size() < (1 << 16)) continue;
            out += ToCp1252(text);
            text.resize(0);
            file.Spill(out);
        }
        out += ToCp1252(text);
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
    return Write("SaveCsvFile", fileName, heading, [&f](DateTexts &dates, const MeasurementData &m, int32_t i, QString &out) {
        When(dates, m, i, out);
        out += QLatin1Char(';');
        // Each field as the type it is held in: the axes are floats, the resultant a double.
        for (const float v : {m.DataX[size_t(i)], m.DataY[size_t(i)], m.DataZ[size_t(i)]}) {
            f.Append(out, v);
            out += QLatin1Char(';');
        }
        f.Append(out, m.DataValue[size_t(i)]);
        out += QLatin1String(";\r\n");
    });
}

bool SaveFileTxt(const QString &fileName) {
    const FixedNumber f(1, 2);
    return Write("SaveFileTxt", fileName, QString(), [&f](DateTexts &dates, const MeasurementData &m, int32_t i, QString &out) {
        When(dates, m, i, out);
        const QChar tab = QLatin1Char('\t');
        out += tab;
        f.Append(out, m.DataX[size_t(i)], 8);
        for (const float v : {m.DataY[size_t(i)], m.DataZ[size_t(i)]}) {
            out += tab;
            f.Append(out, v, 8, u"  ");
        }
        out += tab;
        f.Append(out, m.DataValue[size_t(i)], 8, u"  ");
        out += QLatin1String("\r\n");
    });
}

bool SaveTable(const QString &fileName, int filterIndex) {
    return filterIndex == 1 ? SaveCsvFile(fileName) : SaveFileTxt(fileName);
}

} // namespace fm
