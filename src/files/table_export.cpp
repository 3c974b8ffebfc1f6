#include "files/table_export.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/regional.h"
#include "core/safe_file.h"
#include "core/text_align.h"

namespace fm {
namespace {
// The date and the time are formed apart, so a sample at midnight shows its time too.
QString When(const MeasurementData &d, int32_t i) {
    const double date = d.SampleDate(i);
    return ShortDate(date) + QLatin1Char(' ') + LongTime(date);
}

template <class Row>
bool Write(const char *procedure, const QString &fileName, const QString &heading, Row row) {
    return Trap(procedure, false, [&] {
        const MeasurementData &d = Data();
        const int32_t n = d.DataCount;
        if (d.DataX.size() < size_t(n) + 1 || d.DataValue.size() < size_t(n) + 1) Raise(err::Subscript);
        SafeFile file(fileName);
        file.Open();
        QByteArray out = ToCp1252(heading);
        for (int32_t i = 1; i <= n; ++i) {
            out += ToCp1252(row(d, i));
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
    return Write("SaveCsvFile", fileName, heading, [](const MeasurementData &m, int32_t i) {
        // Each field as the type it is held in: the axes are floats, the resultant a double.
        const auto f = [](auto v) { return FormatNumber(v, u"#.0000") + QLatin1Char(';'); };
        return When(m, i) + QLatin1Char(';') + f(m.DataX[size_t(i)]) + f(m.DataY[size_t(i)]) + f(m.DataZ[size_t(i)]) +
               f(m.DataValue[size_t(i)]) + QStringLiteral("\r\n");
    });
}

bool SaveFileTxt(const QString &fileName) {
    return Write("SaveFileTxt", fileName, QString(), [](const MeasurementData &m, int32_t i) {
        const QChar tab = QLatin1Char('\t');
        const auto f = [](auto v) { return Formatta(FormatNumber(v, u"  #0.00"), 8); };
        return When(m, i) + tab + Formatta(FormatNumber(m.DataX[size_t(i)], u"#0.00"), 8) + tab +
               f(m.DataY[size_t(i)]) + tab + f(m.DataZ[size_t(i)]) + tab + f(m.DataValue[size_t(i)]) +
               QStringLiteral("\r\n");
    });
}

bool SaveTable(const QString &fileName, int filterIndex) {
    return filterIndex == 1 ? SaveCsvFile(fileName) : SaveFileTxt(fileName);
}

} // namespace fm
