#pragma once
// Charts and the data list on paper: a chart on one page between a heading that sums up
// the measurement and a footer, the list as its text.
#include <QFont>
#include <QString>
#include <cstdint>
#include <functional>

namespace fm {
class ChartControl;
class DataList;
class PrinterPage;

// kind: "TE" the time chart, "ST" the statistics chart, "RF" the RF chart.
void PrintChart(const QString &title, const QString &kind);
// The data list that stands open, whole or its selection.
void PrintData();

void PrintHeader(PrinterPage &page, const QString &title);
void PrintFooter(PrinterPage &page);
// alignment: 0 left, 1 right, 2 centred.
void PrintLine(PrinterPage &page, const QString &text, int alignment);

// The chart's size while it prints, in twips, whatever the orientation.
inline constexpr int kPrintChartWidth = 12465, kPrintChartHeight = 9345;
// The page of a chart; the time chart prints with its legend.
void DrawChartPage(PrinterPage &page, const QString &title, ChartControl *chart, bool legend);
// Lines first..last of the list in `font`, as many pages as they take; the marked
// line in bold red, as on the screen. Only pages fromPage..toPage (from 1) when given.
// `onPage` hears of each page begun, by its number.
void DrawListPages(PrinterPage &page, const DataList &list, int64_t first, int64_t last,
                   int64_t marked, const QFont &font, int fromPage = 0, int toPage = 0,
                   const std::function<void(int)> &onPage = {});
// The chart windows' print title: 4083, the two codes trimmed.
QString ChartPrintTitle();
}  // namespace fm
