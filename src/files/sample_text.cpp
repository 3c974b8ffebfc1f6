#include "files/sample_text.h"

#include "core/cp1252.h"
#include "core/regional.h"

#include <cmath>

namespace fm {

SampleWriter::SampleWriter() : mark_(char(DecimalMark().toLatin1())) {}

// The "0.00 " form with its half-to-even rounding, without building a QString per value.
void SampleWriter::Value(QByteArray &out, float v) const {
    const double r = RoundHalfEven(double(v), 2);
    if (!std::isfinite(r) || std::fabs(r) >= 1e12) {
        out += ToCp1252(FormatNumber(v, u"0.00 "));
        return;
    }
    long long hundredths = std::llround(r * 100);
    if (hundredths < 0) {
        out += '-';
        hundredths = -hundredths;
    }
    char buf[32];
    int len = 0;
    long long whole = hundredths / 100;
    do {
        buf[len++] = char('0' + whole % 10);
        whole /= 10;
    } while (whole > 0);
    while (len > 0) out += buf[--len];
    out += mark_;
    out += char('0' + (hundredths / 10) % 10);
    out += char('0' + hundredths % 10);
    out += ' ';
}

void SampleWriter::Append(QByteArray &out, float x, float y, float z) const {
    if (x == -1.0f && y == -1.0f && z == -1.0f) {
        out += "\"-1 -1 -1 0\"\r\n";
        return;
    }
    out += '"';
    Value(out, x);
    Value(out, y);
    Value(out, z);
    out += " 0\"\r\n";
}

} // namespace fm
