// The print dialog's page numbers and the printed page's texts and geometry, without a
// printer.
#include "core/data_set.h"
#include "core/language.h"
#include "core/regional.h"
#include "printing/page_text.h"
#include "printing/print_dialog.h"

#include <gtest/gtest.h>
#include <array>

using namespace fm;

namespace {
std::array<int, 4> Pages(const clsPrintDialog &d) {
    return {d.Min(), d.FromPage(), d.ToPage(), d.Max()};
}
}  // namespace

TEST(PrintDialog, PageNumbersKeepTheirOrder) {
    clsPrintDialog d;
    EXPECT_EQ(Pages(d), (std::array{0, 0, 0, 0}));
    d.SetMax(5);  // the ones before it stay at 0
    EXPECT_EQ(Pages(d), (std::array{0, 0, 0, 5}));
    d.SetMin(7);  // above Max: every later one comes up with it
    EXPECT_EQ(Pages(d), (std::array{7, 7, 7, 7}));
    d.SetFromPage(3);  // below Min: Min goes down, the later ones stay
    EXPECT_EQ(Pages(d), (std::array{3, 3, 7, 7}));
    d.SetToPage(-4);  // below 1 is 0, and pulls every earlier one down
    EXPECT_EQ(Pages(d), (std::array{0, 0, 0, 7}));
    d.SetToPage(40000);  // the dialog's 16 bits
    EXPECT_EQ(d.ToPage(), 32767);
    EXPECT_EQ(d.Max(), 32767);
}

TEST(PrintedPage, SummaryLineAndFooter) {
    MeasurementData &d = Data();
    d = MeasurementData{};
    d.DataCount = 4320;
    d.DataStart = DateFromParts(2026, 10, 14, 8);
    d.DataStep = 10;
    const QString head = QStringLiteral("[ 4320 ") + ResString(4031) + QStringLiteral(". ") + ResString(4080) +
                         QLatin1Char(' ') + GeneralDate(d.DataStart) + QLatin1Char(' ');
    const std::pair<const char *, int> units[] = {{"s", 3013}, {"n", 3012}, {"h", 3014}, {"d", 3015}};
    for (auto [letter, name] : units) {
        d.DataStepUnit = QString::fromLatin1(letter);
        EXPECT_EQ(PrintSummaryLine(),
                  head + ResString(4081) + QStringLiteral(" 10 ") + ResString(name) + QStringLiteral(" ]"));
    }
    // An unknown unit: the date and its blank, then the close.
    d.DataStepUnit = QStringLiteral("w");
    EXPECT_EQ(PrintSummaryLine(), head + QStringLiteral(" ]"));
    EXPECT_TRUE(PrintVersionLine().startsWith(QStringLiteral("Fluxmere QL540. SW Rev. 3.")));
    EXPECT_EQ(PrintVersionLine().count(QLatin1Char('.')), 4);
    EXPECT_EQ(PrintedOnLine(d.DataStart), ResString(349) + GeneralDate(d.DataStart));
}

TEST(PrintedPage, LineStartsAndShrinking) {
    EXPECT_EQ(LineStartX(0, 11000, 3000), 50);
    EXPECT_EQ(LineStartX(1, 11000, 3000.4), 7950);
    EXPECT_EQ(LineStartX(2, 11001, 3000), 4001);  // rounded, not cut
    EXPECT_EQ(LineStartX(7, 11000, 3000), 0);

    // Each point smaller takes 500 twips off; the text fits at 8 points.
    double size = 12;
    const auto apply = [&](double s) { return size = s; };
    const auto width = [&] { return 6000 + (size - 8) * 500; };
    EXPECT_EQ(FitFontSize(12, 6100, apply, width), 8);
    // A device that keeps 10 points whatever it is asked stops the shrinking there.
    size = 12;
    const auto rounding = [&](double s) { return size = std::max(s, 10.0); };
    EXPECT_EQ(FitFontSize(12, 6100, rounding, width), 10);
}

TEST(PrintedPage, ChartRectangles) {
    // A4 at 600 printer pixels an inch, 5 mm margins: 4724 x 6780.
    EXPECT_EQ(PrintChartRect(true, 6780, 4724), QRect(QPoint(100, 100), QPoint(6680, 4624)));
    const QRect portrait = PrintChartRect(false, 4724, 6780);
    const double height = (6780 - 200) * 0.74;  // 4869.2
    EXPECT_EQ(portrait.left(), 100);
    EXPECT_EQ(portrait.right(), 4624);
    EXPECT_EQ(portrait.top(), qRound((6780 - height) / 2));
    EXPECT_EQ(portrait.bottom(), qRound(height));  // the formula itself, not top + height
}
