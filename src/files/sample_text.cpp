#include "files/sample_text.h"

#include "core/cp1252.h"
#include "core/regional.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace fm {

SampleWriter::SampleWriter() : mark_(char(DecimalMark().toLatin1())) {}

// The "0.00 " form without a QString per value, with the same rounding: half to even
// on the shortest decimal text of the float, so 0.165f writes 0.16 as it reads.
void SampleWriter::Value(QByteArray &out, float v) const {
    const double r = double(v) * 100;
    // Near a tie the single-precision value's own decimal text decides, as the pattern
    // formatter does: 0.165f is "0.165" and goes to 0.16.
    // "Near" is within the float's own spacing: its shortest text can sit that far from its binary value.
    const float a = std::fabs(v);
    const double spacing = 100.0 * double(std::nextafter(a, std::numeric_limits<float>::infinity()) - a);
    if (!std::isfinite(r) || std::fabs(r) >= 1e12 ||
        std::fabs(std::fabs(r - std::trunc(r)) - 0.5) <= std::max(1e-3, spacing)) {
        out += ToCp1252(FormatNumber(v, u"0.00 "));
        return;
    }
    long long hundredths = std::llround(r);
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
