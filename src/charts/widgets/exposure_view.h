#pragma once
// The texts and drawings of the exposure window, apart from its controls: the table of
// the 24-hour periods, the hourly profile and the words of a verdict.
#include "analysis/exposure.h"

#include <QString>

class QCustomPlot;
class QTableWidget;

namespace fm {
// A date with its time even at midnight: the start of a stretch, not a day.
QString DateTimeText(double date);
// A figure in µT with two decimals, or "---" without one.
QString FieldText(const std::optional<double> &value);
// "exceeded: 12.30 µT (from 14/10/2026 08:00:00)".
QString VerdictText(const ReferenceVerdict &verdict, const ExposureFigures &figures);

// Start, median, valid samples, coverage and a mark for a partial or thin period.
void FillPeriods(QTableWidget *table, const ExposureFigures &figures);
// A bar for each hour of the day with data, the threshold as a line when in reach.
void DrawHourlyMeans(QCustomPlot *plot, const ExposureFigures &figures);
}  // namespace fm
