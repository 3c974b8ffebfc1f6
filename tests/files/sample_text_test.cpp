// The log writer's own number form must give the very text of the general "0.00 "
// pattern: a file saved fast reads the same as one formatted value by value.
#include "files/sample_text.h"
#include "core/cp1252.h"
#include "core/regional.h"
#include "support/test_env.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

using namespace fm;

namespace {
QByteArray Expected(float x, float y, float z) {
    return '"' + ToCp1252(FormatNumber(x, u"0.00 ") + FormatNumber(y, u"0.00 ") + FormatNumber(z, u"0.00 ")) +
           " 0\"\r\n";
}

QByteArray Written(const SampleWriter &w, float x, float y, float z) {
    QByteArray out;
    w.Append(out, x, y, z);
    return out;
}
}  // namespace

TEST(SampleText, AgreesWithTheGeneralNumberForm) {
    for (const char *locale : {"it_IT", "en_US"}) {
        test::ScopedLocale loc(QString::fromLatin1(locale));
        const SampleWriter w;
        // Ties on the value's shortest text, values that round to a negative zero,
        // carries into a new digit, and the far ends of the float range.
        const std::vector<float> edges = {0.0f,    -0.0f,   0.125f,    0.135f,     0.165f,    0.005f,
                                          -0.005f, -0.004f, 9.995f,    99.995f,    1234.565f, -1234.565f,
                                          0.015f,  2.675f,  1e7f,      16777216.f, 3.4e38f,   -3.4e38f,
                                          1e-30f,  -1e-30f, 0.994999f, 5.0f,       -3.4f};
        for (float v : edges) EXPECT_EQ(Written(w, v, 1.0f, v), Expected(v, 1.0f, v)) << v;

        std::mt19937 rng(540);
        std::uniform_real_distribution<float> small(-10.0f, 10.0f);
        std::uniform_int_distribution<int> cents(-200000, 200000);
        std::uniform_int_distribution<uint32_t> bits;
        for (int i = 0; i < 100000; ++i) {
            // Random values, exact thousandths (many ties), and any finite bit pattern.
            const float a = small(rng);
            const float b = float(cents(rng)) / 1000.0f + 0.005f;
            float c;
            do {
                const uint32_t u = bits(rng);
                std::memcpy(&c, &u, sizeof c);
            } while (!std::isfinite(c));
            ASSERT_EQ(Written(w, a, b, c), Expected(a, b, c)) << a << ' ' << b << ' ' << c;
        }
    }
}

TEST(SampleText, MarksAndSpecialValues) {
    test::ScopedLocale loc(QStringLiteral("en_US"));
    const SampleWriter w;
    EXPECT_EQ(Written(w, -1, -1, -1), QByteArray("\"-1 -1 -1 0\"\r\n"));
    // One axis at -1 is a reading, not the mark.
    EXPECT_EQ(Written(w, -1, 0.5f, -1), QByteArray("\"-1.00 0.50 -1.00  0\"\r\n"));
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Written(w, inf, 0, 0), Expected(inf, 0, 0));
}
