#include "charts/widgets/exposure_view.h"

#include "analysis/exposure_text.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "core/widgets/colors.h"

#include <qcustomplot.h>
#include <QHeaderView>
#include <QTableWidget>
#include <cmath>

namespace fm {
QString DateTimeText(double date) {
    return ShortDate(date) + QLatin1Char(' ') + LongTime(date);
}

QString FieldText(const std::optional<double> &value) {
    return value ? FormatNumber(*value, u"#0.00") + QStringLiteral(" µT") : QStringLiteral("---");
}

QString VerdictText(const ReferenceVerdict &v, const ExposureFigures &figures) {
    QString text = ExposureVerdictText(v.verdict);
    if (!v.figure) return text;
    text += QStringLiteral(": ") + FieldText(v.figure);
    if (v.period >= 0 && size_t(v.period) < figures.periods.size())
        text += QStringLiteral(" (") +
                ResString(4499).arg(DateTimeText(figures.periods[size_t(v.period)].start)) + QLatin1Char(')');
    return text;
}

void FillPeriods(QTableWidget *table, const ExposureFigures &figures) {
    table->setRowCount(int(figures.periods.size()));
    const auto cell = [table](int row, int column, const QString &text, bool right) {
        auto *item = new QTableWidgetItem(text);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        if (right) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table->setItem(row, column, item);
        return item;
    };
    for (int r = 0; r < table->rowCount(); ++r) {
        const DailyPeriod &p = figures.periods[size_t(r)];
        cell(r, 0, DateTimeText(p.start), false);
        cell(r, 1, p.median ? FormatNumber(*p.median, u"#0.00") : QStringLiteral("---"), true);
        cell(r, 2, FormatNumber(double(p.valid), u"0"), true);
        cell(r, 3, FormatNumber(p.coverage * 100, u"0.0") + QStringLiteral(" %"), true);
        // A last period cut short is partial whatever its coverage; a full one under 90 %
        // is not complete, and a median verdict does not rest on it.
        QString mark;
        if (p.partial) mark = ResString(4475);
        if (!p.complete) mark += (mark.isEmpty() ? QString() : QStringLiteral(", ")) + ResString(4476);
        QTableWidgetItem *note = cell(r, 4, mark, false);
        if (!p.complete) note->setForeground(QColor(0xb0, 0x40, 0x10));
        if (r == figures.highestMedianPeriod) {
            QFont bold = table->font();
            bold.setBold(true);
            table->item(r, 1)->setFont(bold);
        }
    }
    // The last column keeps stretching to the edge.
    for (int c = 0; c < 4; ++c) table->resizeColumnToContents(c);
}

void DrawHourlyMeans(QCustomPlot *plot, const ExposureFigures &figures) {
    plot->clearPlottables();
    plot->clearItems();
    QVector<double> hours, means;
    double top = 0;
    for (int h = 0; h < 24; ++h) {
        if (!figures.hourlyMean[size_t(h)]) continue;  // no bar for an hour without data
        hours << h;
        means << *figures.hourlyMean[size_t(h)];
        top = std::max(top, means.back());
    }
    auto *bars = new QCPBars(plot->xAxis, plot->yAxis);
    bars->setObjectName(QStringLiteral("hourlyBars"));
    bars->setWidth(0.7);
    const QColor color = FromBgr(Options().ColorBars);
    bars->setBrush(color);
    bars->setPen(QPen(color.darker(130)));
    bars->setData(hours, means, true);
    // The threshold shows when it stands within twice the highest mean: far above it
    // would only flatten the bars.
    const double threshold = double(figures.threshold);
    if (threshold > 0 && !hours.isEmpty() && threshold <= 2 * top) {
        auto *line = new QCPItemStraightLine(plot);
        line->point1->setCoords(0, threshold);
        line->point2->setCoords(1, threshold);
        line->setPen(QPen(FromBgr(Options().ColorSoglia), 1, Qt::DashLine));
        top = std::max(top, threshold);
    }
    plot->xAxis->setRange(-0.6, 23.6);
    plot->yAxis->setRange(0, top > 0 ? top * 1.15 : 1);
    plot->replot();
}
}  // namespace fm
