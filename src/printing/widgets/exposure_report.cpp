#include "printing/widgets/exposure_report.h"

#include "analysis/exposure_text.h"
#include "analysis/warnings.h"
#include "charts/widgets/chart_control.h"
#include "charts/widgets/chart_window.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/options.h"
#include "core/regional.h"
#include "printing/page_text.h"
#include "printing/print_dialog.h"
#include "printing/widgets/print_chart.h"
#include "printing/widgets/print_job.h"
#include "printing/widgets/printer_page.h"
#include "shell/info_model.h"

#include <qcustomplot.h>
#include <QFileInfo>
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace fm {
namespace {
// Twips: the page's margin inside the printable area, the room between blocks, and the
// chart's layout width in screen pixels (fonts and lines keep their share of it).
constexpr double kLeft = 50;
constexpr double kGap = 200;
constexpr int kChartPixels = 820;
constexpr int kHistogramClasses = 20;

const QColor kExceeded(190, 0, 0), kMet(0, 120, 0), kOpen(150, 95, 0), kRule(110, 110, 110);
const QColor kExceededBack(255, 222, 222), kHeadBack(232, 232, 232);

QString NoFigure() {
    return QStringLiteral("---");
}
QString Tesla(const std::optional<double> &v) {
    return v ? Microtesla(*v) : NoFigure();
}
QString ReferenceValue(double v) {
    return FormatNumber(v, u"0.##") + QStringLiteral(" µT");
}
QStringList Parts(int id) {
    return ResString(id).split(QLatin1Char('|'));
}

// What a report shows, worked out once: the figures, the verdicts and the charts. The pages
// are laid out anew on each device that draws them (the preview draws more than once).
class ExposureReport {
public:
    explicit ExposureReport(const ExposureChoice &choice);
    void Draw(PrinterPage &page) const;

private:
    void BuildTimeChart();
    void BuildHistogram();
    void BuildHourly();

    ExposureChoice choice_;
    ExposureFigures f_;
    std::vector<ReferenceVerdict> verdicts_;
    InfoTexts info_;
    QString shortId_, longId_;
    std::vector<WarningLine> warnings_;
    QStringList aboveScale_;  // the references above the time chart's scale
    std::unique_ptr<ChartControl> time_, histogram_, hourly_;
};

// One step of a page's drawing, with its place worked out.
using Step = std::function<void(PrinterPage &)>;

// The pages as the blocks flow down them: each a list of steps; a block that does not fit
// under the last goes to the next page.
class Flow {
public:
    Flow(PrinterPage &page, double top, double bottom) : page_(page), top_(top), bottom_(bottom), y(top) {}
    std::vector<std::vector<Step>> pages{1};
    PrinterPage &page_;
    double top_, bottom_;
    double y;

    double Width() const { return page_.ScaleWidth() - 2 * kLeft; }
    bool Fits(double h) const { return y + h <= bottom_; }
    void Break() {
        pages.emplace_back();
        y = top_;
    }
    // Room for h below, or a new page (a page still empty keeps what does not fit anyway).
    void Need(double h) {
        if (!Fits(h) && y > top_) Break();
    }
    void Add(Step s) { pages.back().push_back(std::move(s)); }

    QFont Font(double points, bool bold) const {
        QFont font = page_.Font();
        font.setPointSizeF(points);
        font.setBold(bold);
        return font;
    }
    double Height(const QFont &font) const {
        page_.SetFont(font);
        return page_.TextHeight();
    }
    double Width(const QFont &font, const QString &text) const {
        page_.SetFont(font);
        return page_.TextWidth(text);
    }
    // The text cut to `room` with an ellipsis, as little as it must be.
    QString Fit(const QFont &font, const QString &text, double room) const {
        if (Width(font, text) <= room) return text;
        QString cut = text;
        while (!cut.isEmpty() && Width(font, cut + QChar(0x2026)) > room) cut.chop(1);
        return cut + QChar(0x2026);
    }
    // Words on lines no wider than `room`; a word wider than the room is cut.
    QStringList Wrap(const QFont &font, const QString &text, double room) const {
        QStringList lines;
        for (const QString &paragraph : text.split(QLatin1Char('\n'))) {
            QString line;
            for (const QString &word : paragraph.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
                const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
                if (line.isEmpty() || Width(font, longer) <= room) {
                    line = longer;
                    continue;
                }
                lines << Fit(font, line, room);
                line = word;
            }
            lines << Fit(font, line, room);
        }
        return lines;
    }

    void TextAt(double x, double y0, const QString &text, const QFont &font, QColor color = Qt::black) {
        Add([=](PrinterPage &p) {
            p.SetFont(font);
            p.CurrentX = x;
            p.CurrentY = y0;
            p.Print(text, color);
        });
    }
    void Fill(double x, double y0, double w, double h, QColor color) {
        Add([=](PrinterPage &p) { p.Painter().fillRect(Rect(p, x, y0, w, h), color); });
    }
    void Rule(double y0, double weight = 10) {
        const double x = kLeft, w = Width();
        Add([=](PrinterPage &p) { p.Painter().fillRect(Rect(p, x, y0, w, weight), kRule); });
    }
    // A rectangle in twips of the printable area, on the device.
    static QRectF Rect(PrinterPage &p, double x, double y0, double w, double h) {
        constexpr double k = PrinterPage::kPixelsPerInch / 1440;
        return p.DeviceRect(QRect(QPoint(int(std::lround(x * k)), int(std::lround(y0 * k))),
                                  QPoint(int(std::lround((x + w) * k)), int(std::lround((y0 + h) * k)))));
    }

    void Heading(const QString &text) {
        const QFont font = Font(12, true);
        const double h = Height(font);
        Need(kGap + h * 3);  // a heading never stands alone at a page's foot
        if (y > top_) y += kGap;
        TextAt(kLeft, y, text, font);
        y += h;
        Rule(y, 15);
        y += 60;
    }
    // Label and value pairs, the values in a column after the widest label.
    void Pairs(const std::vector<std::pair<QString, QString>> &pairs) {
        const QFont label = Font(10, false), value = Font(10, true);
        double column = 0;
        for (const auto &[l, v] : pairs) column = std::max(column, Width(label, l));
        column = std::min(column + 250, Width() * 0.45);
        const double h = Height(value) + 30;
        for (const auto &[l, v] : pairs) {
            const QStringList lines = Wrap(value, v, Width() - column);
            Need(h * double(lines.size()));
            TextAt(kLeft + 100, y, Fit(label, l, column - 200), label);
            for (const QString &line : lines) {
                TextAt(kLeft + 100 + column, y, line, value);
                y += h;
            }
        }
    }

    struct Column {
        double share;  // of the width
        bool right;
    };
    // A table: its heading row shaded, then the rows; the heading again on each new page.
    // `style` gives a row its font, colour and background.
    struct RowStyle {
        bool bold = false;
        QColor color = Qt::black;
        QColor back;  // none when invalid
        QColor lastColor;  // the last cell's own colour, when valid
        bool lastBold = false;
    };
    void Table(const std::vector<Column> &columns, const QStringList &head,
               const std::vector<QStringList> &rows, const std::function<RowStyle(size_t)> &style) {
        const QFont headFont = Font(9, true);
        const double line = Height(headFont), pad = 60;
        std::vector<double> x(columns.size()), w(columns.size());
        double at = kLeft;
        for (size_t c = 0; c < columns.size(); ++c) {
            x[c] = at;
            w[c] = Width() * columns[c].share;
            at += w[c];
        }
        // A row as tall as its longest cell: a text wider than its column goes on over a
        // second line, and is cut only past that.
        const auto cells = [&](const QStringList &texts, const std::function<QFont(size_t)> &font) {
            std::vector<QStringList> out(columns.size());
            for (size_t c = 0; c < columns.size() && c < size_t(texts.size()); ++c) {
                QStringList lines = Wrap(font(c), texts[qsizetype(c)], w[c] - 2 * pad);
                if (lines.size() > 2) {
                    lines = lines.mid(0, 2);
                    lines[1] = Fit(font(c), lines[1] + QString(QChar(0x2026)), w[c] - 2 * pad);
                }
                out[c] = lines;
            }
            return out;
        };
        const auto height = [&](const std::vector<QStringList> &laid) {
            qsizetype most = 1;
            for (const QStringList &l : laid) most = std::max(most, l.size());
            return double(most) * line + 50;
        };
        const auto draw = [&](const std::vector<QStringList> &laid, const std::function<QFont(size_t)> &font,
                              const std::function<QColor(size_t)> &color) {
            for (size_t c = 0; c < laid.size(); ++c) {
                double top = y + 25;
                for (const QString &text : laid[c]) {
                    const double left = columns[c].right ? x[c] + w[c] - pad - Width(font(c), text) : x[c] + pad;
                    TextAt(left, top, text, font(c), color(c));
                    top += line;
                }
            }
        };
        const auto headCells = cells(head, [&](size_t) { return headFont; });
        const double headHeight = height(headCells);
        const auto headRow = [&] {
            Fill(kLeft, y, Width(), headHeight, kHeadBack);
            draw(headCells, [&](size_t) { return headFont; }, [](size_t) { return QColor(Qt::black); });
            y += headHeight;
            Rule(y);
        };
        Need(headHeight + 2 * (line + 50));
        headRow();
        for (size_t r = 0; r < rows.size(); ++r) {
            const RowStyle s = style(r);
            const QFont font = Font(9, s.bold), bold = Font(9, true);
            const auto fontOf = [&](size_t c) { return c + 1 == columns.size() && s.lastBold ? bold : font; };
            const auto laid = cells(rows[r], fontOf);
            const double h = height(laid);
            if (!Fits(h)) {
                Break();
                headRow();
            }
            if (s.back.isValid()) Fill(kLeft, y, Width(), h, s.back);
            draw(laid, fontOf, [&](size_t c) {
                return c + 1 == columns.size() && s.lastColor.isValid() ? s.lastColor : s.color;
            });
            y += h;
        }
        Rule(y);
        y += 40;
    }
};

ExposureReport::ExposureReport(const ExposureChoice &choice) : choice_(choice) {
    const MeasurementData &d = Data();
    f_ = ComputeExposure(d, Options().Soglia);
    for (const ExposureReference &r : choice_.references) verdicts_.push_back(Judge(f_, r));
    info_ = BuildInfo();
    shortId_ = d.ShortID.trimmed();
    longId_ = d.LongID.trimmed();
    warnings_ = Warnings();
    BuildTimeChart();
    BuildHistogram();
    BuildHourly();
}

// A chart for the page alone: white, without a legend, at the width it is laid out on.
std::unique_ptr<ChartControl> PageChart(const QString &title) {
    auto c = std::make_unique<ChartControl>();
    c->resize(kChartPixels, 400);
    c->SetTitle(title);
    c->SetBackColor(Qt::white);
    c->SetLegendVisible(false);
    return c;
}

QFont ItemFont(bool bold) {
    QFont font;
    font.setPixelSize(11);
    font.setBold(bold);
    return font;
}

void ExposureReport::BuildTimeChart() {
    const MeasurementData &d = Data();
    time_ = PageChart(ResString(3034));
    ChartControl *c = time_.get();
    c->SetLeftTitle(ResString(3033) + QStringLiteral(" (µT)"));
    c->AddSeries(ChartControl::FastLine);
    c->SetSeriesTitle(0, ResString(3041));
    c->SetSeriesColor(0, QColor(0, 70, 160));
    const int32_t n = DrawableSamples(d.DataValue.size());
    std::vector<float> values(size_t(std::max(n, 0)));
    for (int32_t i = 1; i <= n; ++i) {
        const double v = d.DataValue[size_t(i)];
        values[size_t(i - 1)] = v > 0 ? float(v) : std::numeric_limits<float>::quiet_NaN();
    }
    c->SetValues(0, std::move(values));
    c->SetLabelFunction(SampleDateLabels());
    // The scale holds the field, and the nearest reference above it when that is no more
    // than three times the maximum; the others above are named under the chart.
    const double highest = f_.maximum.value_or(0);
    double top = highest > 0 ? highest * 1.1 : 1;
    double nearest = 0;
    for (const ExposureReference &r : choice_.references)
        if (r.value > highest && r.value <= std::max(highest, 0.1) * 3 && (nearest == 0 || r.value < nearest))
            nearest = r.value;
    top = std::max(top, nearest * 1.12);
    if (f_.threshold > 0 && f_.threshold <= std::max(highest, 0.1) * 3) top = std::max(top, f_.threshold * 1.12);
    c->SetLeftRange(0, top, 0);
    QCustomPlot *plot = c->Plot();
    const auto line = [&](double value, const QString &label, QColor color, Qt::PenStyle style, size_t slot) {
        auto *l = new QCPItemStraightLine(plot);
        l->point1->setCoords(0, value);
        l->point2->setCoords(1, value);
        l->setPen(QPen(color, 1.5, style));
        auto *text = new QCPItemText(plot);
        text->position->setTypeX(QCPItemPosition::ptAxisRectRatio);
        text->position->setTypeY(QCPItemPosition::ptPlotCoords);
        static constexpr double across[] = {0.99, 0.01, 0.5};
        static constexpr Qt::Alignment align[] = {Qt::AlignRight, Qt::AlignLeft, Qt::AlignHCenter};
        text->position->setCoords(across[slot], value);
        text->setPositionAlignment(align[slot] | Qt::AlignBottom);
        text->setFont(ItemFont(true));
        text->setColor(color);
        text->setBrush(QColor(255, 255, 255, 210));
        text->setText(label);
    };
    // One line for each value, labelled with every reference at it, and the threshold's
    // dashed. From the lowest up, a label goes at the right, else at the left, else in the
    // middle: wherever the label below it leaves room.
    struct Level {
        double value;
        QStringList names;
        QColor color;
        Qt::PenStyle style;
    };
    static const QColor colors[] = {QColor(200, 0, 0), QColor(210, 110, 0), QColor(140, 0, 140),
                                    QColor(0, 130, 130), QColor(90, 90, 0), QColor(0, 0, 0)};
    std::vector<Level> levels;
    for (const ExposureReference &r : choice_.references) {
        auto at = std::find_if(levels.begin(), levels.end(), [&](const Level &l) { return l.value == r.value; });
        if (at == levels.end())
            at = levels.insert(levels.end(), {r.value, {}, colors[levels.size() % std::size(colors)], Qt::SolidLine});
        at->names << ExposureReferenceName(r);
    }
    if (f_.threshold > 0) levels.push_back({f_.threshold, {ResString(4449)}, QColor(100, 100, 100), Qt::DashLine});
    std::stable_sort(levels.begin(), levels.end(), [](const Level &a, const Level &b) { return a.value < b.value; });
    QStringList above;
    constexpr double kLabelShare = 0.065;  // of the plot's height, a label's with some room
    std::array<double, 3> lastAt = {-1, -1, -1};  // right, left, middle
    for (const Level &l : levels) {
        const QString label = l.names.join(QStringLiteral(" \u00b7 ")) + QStringLiteral(" ") + ReferenceValue(l.value);
        if (l.value > top) {
            if (l.style == Qt::SolidLine) above << label;
            continue;
        }
        const double at = l.value / top;
        size_t slot = 0;
        while (slot < 3 && at - lastAt[slot] < kLabelShare) ++slot;
        if (slot == 3) slot = 0;
        lastAt[slot] = at;
        line(l.value, label, l.color, l.style, slot);
    }
    aboveScale_ = above;
    c->Refresh();
}

void ExposureReport::BuildHistogram() {
    const MeasurementData &d = Data();
    histogram_ = PageChart(ResString(3037));
    ChartControl *c = histogram_.get();
    c->SetLeftTitle(ResString(3043));
    c->SetBottomTitle(QStringLiteral("(µT)"));
    c->SetBottomLabelAngle(90);
    c->AddSeries(ChartControl::Bars);
    c->SetSeriesColor(0, QColor(70, 120, 190));
    const double highest = f_.maximum.value_or(0);
    const double width = highest > 0 ? highest / kHistogramClasses : 1.0 / kHistogramClasses;
    std::array<int64_t, kHistogramClasses> count{};
    const int32_t n = DrawableSamples(d.DataValue.size());
    for (int32_t i = 1; i <= n; ++i) {
        const double v = d.DataValue[size_t(i)];
        if (!(v > 0)) continue;
        ++count[size_t(std::clamp(int(v / width), 0, kHistogramClasses - 1))];
    }
    const char16_t *pattern = width >= 10 ? u"0" : width >= 1 ? u"0.0" : width >= 0.01 ? u"0.00" : u"0.000";
    double most = 0;
    for (int k = 0; k < kHistogramClasses; ++k) {
        const double share = f_.valid > 0 ? double(count[size_t(k)]) * 100 / f_.valid : 0;
        most = std::max(most, share);
        c->Add(0, share, FormatNumber(width * k, pattern) + QChar(0x2013) + FormatNumber(width * (k + 1), pattern));
    }
    // Ticks at 1, 2 or 5 times a power of ten, about five of them, with the decimals they need.
    const double top = std::min(100.0, std::max(1.0, most * 1.12));
    const double raw = top / 5, power = std::pow(10.0, std::floor(std::log10(raw)));
    const double step = raw <= power ? power : raw <= 2 * power ? 2 * power : raw <= 5 * power ? 5 * power : 10 * power;
    c->SetLeftRange(0, top, step);
    c->SetLeftDecimals(step < 1 ? 1 : 0);
    c->Refresh();
}

void ExposureReport::BuildHourly() {
    hourly_ = PageChart(ResString(4465));
    ChartControl *c = hourly_.get();
    c->SetLeftTitle(ResString(3033) + QStringLiteral(" (µT)"));
    c->SetBottomTitle(ResString(4466));
    c->AddSeries(ChartControl::Bars);
    c->SetSeriesColor(0, QColor(60, 150, 90));
    double most = 0;
    for (int h = 0; h < 24; ++h) {
        const std::optional<double> &mean = f_.hourlyMean[size_t(h)];
        c->Add(0, mean.value_or(0), QStringLiteral("%1").arg(h, 2, 10, QLatin1Char('0')));
        most = std::max(most, mean.value_or(0));
    }
    c->SetLeftRange(0, most > 0 ? most * 1.15 : 1, 0);
    c->Refresh();
    // An hour without data is a gap, not a bar of nothing.
    if (auto *bars = qobject_cast<QCPBars *>(c->Plot()->plottable(0)))
        for (int h = 0; h < 24; ++h)
            if (!f_.hourlyMean[size_t(h)]) bars->data()->remove(double(h));
}

void ExposureReport::Draw(PrinterPage &page) const {
    const QFont base = page.Font();
    const QString title = ResString(4440);
    // The heading of each page is PrintHeader's two lines; the footer's line at the foot.
    page.SetFontSize(12);
    page.SetFontBold(true);
    double top = 10 + page.TextHeight();
    page.SetFontBold(false);
    page.SetFontSize(10);
    top += page.TextHeight() + 150;
    const double bottom = page.ScaleHeight() - page.TextHeight() - 150;

    Flow flow(page, top, bottom);
    // Where the report was made and by what.
    {
        std::vector<std::pair<QString, QString>> about;
        if (!choice_.site.trimmed().isEmpty()) about.emplace_back(ResString(4441), choice_.site.trimmed());
        if (!choice_.notes.trimmed().isEmpty()) about.emplace_back(ResString(4442), choice_.notes.trimmed());
        const QString none = ResString(3021);
        about.emplace_back(ResString(4443) + QStringLiteral(" - ") + ResString(4025),
                           shortId_.isEmpty() ? none : shortId_);
        about.emplace_back(ResString(4443) + QStringLiteral(" - ") + ResString(4026),
                           longId_.isEmpty() ? none : longId_);
        flow.Pairs(about);
    }
    flow.Heading(ResString(4444));
    flow.Pairs({{ResString(4033), info_.start},
                {ResString(4034), info_.stop},
                {ResString(4032), info_.step},
                {ResString(4031), info_.count}});

    // The verdicts come first: they are what the report is for.
    flow.Heading(ResString(4459));
    {
        std::vector<QStringList> rows;
        const QString number = Parts(4455).value(0);
        for (size_t k = 0; k < choice_.references.size(); ++k) {
            const ExposureReference &r = choice_.references[k];
            const ReferenceVerdict &v = verdicts_[k];
            QString judged = Tesla(v.figure);
            if (v.figure && v.period >= 0) judged += QStringLiteral(" (%1 %2)").arg(number).arg(v.period + 1);
            rows.push_back({ExposureReferenceName(r), ReferenceValue(r.value), ExposureBasisText(r.basis), judged,
                            ExposureVerdictText(v.verdict)});
        }
        flow.Table({{0.36, false}, {0.09, true}, {0.19, false}, {0.20, true}, {0.16, false}}, Parts(4460), rows,
                   [&](size_t k) {
                       Flow::RowStyle s;
                       const Verdict v = verdicts_[k].verdict;
                       s.lastBold = true;
                       s.lastColor = v == Verdict::Exceeded ? kExceeded : v == Verdict::Met ? kMet : kOpen;
                       if (v == Verdict::Exceeded) s.back = kExceededBack;
                       return s;
                   });
    }

    flow.Heading(ResString(4445));
    {
        const QString pk = ResString(4447);
        QString above = NoFigure(), longest = NoFigure();
        if (f_.stepSeconds > 0) {
            above = ResString(4451).arg(ExposureDuration(f_.aboveSeconds), FormatNumber(f_.abovePercent, u"0.0"));
            longest = f_.longestRunStart
                          ? ResString(4453).arg(ExposureDuration(f_.longestRunSeconds), GeneralDate(*f_.longestRunStart))
                          : ExposureDuration(0);
        }
        QString highest = Tesla(f_.highestMedian);
        if (f_.highestMedian && f_.highestMedianPeriod >= 0)
            highest += QStringLiteral(" (%1 %2)").arg(Parts(4455).value(0)).arg(f_.highestMedianPeriod + 1);
        flow.Pairs({{ResString(4446), highest},
                    {pk.arg(50), Tesla(f_.p50)},
                    {pk.arg(90), Tesla(f_.p90)},
                    {pk.arg(95), Tesla(f_.p95)},
                    {pk.arg(99), Tesla(f_.p99)},
                    {ResString(4011), Tesla(f_.maximum)},
                    {ResString(4448), Tesla(f_.mean)},
                    {ResString(4449), ReferenceValue(f_.threshold)},
                    {ResString(4450), above},
                    {ResString(4452), longest}});
    }

    flow.Heading(ResString(4454));
    {
        std::vector<QStringList> rows;
        rows.reserve(f_.periods.size());
        for (size_t k = 0; k < f_.periods.size(); ++k) {
            const DailyPeriod &p = f_.periods[k];
            QStringList state;
            if (p.partial) state << ResString(4457);
            state << ResString(p.complete ? 4456 : 4458);
            rows.push_back({QString::number(k + 1), GeneralDate(p.start), Tesla(p.median), QString::number(p.valid),
                            FormatNumber(p.coverage * 100, u"0.0") + QStringLiteral(" %"),
                            state.join(QStringLiteral(", "))});
        }
        if (rows.empty()) rows.push_back({QString(), ResString(3021)});
        flow.Table({{0.07, true}, {0.27, false}, {0.15, true}, {0.17, true}, {0.13, true}, {0.21, false}},
                   Parts(4455), rows, [&](size_t k) {
                       Flow::RowStyle s;
                       if (k >= f_.periods.size()) return s;
                       s.bold = int32_t(k) == f_.highestMedianPeriod;
                       if (!f_.periods[k].complete) s.lastColor = kOpen;
                       return s;
                   });
    }

    if (!warnings_.empty()) {
        flow.Heading(ResString(4467));
        const QFont info = flow.Font(9, false), look = flow.Font(9, true);
        const double h = flow.Height(look) + 20;
        for (const WarningLine &w : warnings_) {
            const QFont &font = w.level >= 3 ? look : info;
            const QStringList lines = flow.Wrap(font, w.text, flow.Width() - 300);
            flow.Need(h * double(lines.size()));
            bool first = true;
            for (const QString &line : lines) {
                if (first) flow.TextAt(kLeft + 100, flow.y, QStringLiteral("\u2022"), font);
                flow.TextAt(kLeft + 300, flow.y, line, font, w.level >= 3 ? kExceeded : QColor(Qt::black));
                flow.y += h;
                first = false;
            }
        }
    }

    // The charts on a page of their own: the time chart over the two profiles; under it, the
    // references that lie above its scale.
    flow.Break();
    {
        const QFont small = flow.Font(8, false);
        const QStringList note =
            aboveScale_.isEmpty()
                ? QStringList()
                : flow.Wrap(small, QStringLiteral("\u2191 ") + aboveScale_.join(QStringLiteral("; ")), flow.Width() - 200);
        const double noteLine = flow.Height(small);
        const double gap = 150, noteHeight = double(note.size()) * noteLine;
        const double room = bottom - top - 2 * gap - noteHeight;
        const double tall = room * 0.42, low = room * 0.29;
        double y = top;
        for (auto [chart, height] : {std::pair{time_.get(), tall}, std::pair{histogram_.get(), low},
                                     std::pair{hourly_.get(), low}}) {
            const double x = kLeft, w = flow.Width(), y0 = y, h = height;
            flow.Add([=](PrinterPage &p) {
                const QRectF rect = Flow::Rect(p, x, y0, w, h);
                chart->DrawForPrint(p.Painter(), rect, QSize(kChartPixels, int(kChartPixels * h / w)));
            });
            y += height;
            if (chart == time_.get())
                for (const QString &line : note) {
                    flow.TextAt(kLeft + 200, y, line, small, QColor(60, 60, 60));
                    y += noteLine;
                }
            y += gap;
        }
    }

    // Every page: the heading, its blocks, the footer and its number.
    const int total = int(flow.pages.size());
    for (int n = 1; n <= total; ++n) {
        if (n > 1 && !page.NewPage()) Raise(err::DeviceIO, QStringLiteral("The printer took no further page"));
        page.SetFont(base);
        PrintHeader(page, title);
        for (const Step &step : flow.pages[size_t(n - 1)]) step(page);
        page.SetFont(base);
        page.SetFontSize(10);
        PrintFooter(page);
        page.CurrentY = page.ScaleHeight() - page.TextHeight();
        PrintLine(page, ResString(4433).arg(n).arg(total), 2);
    }
    page.SetFont(base);
}

// "sample-exposure": the PDF offered is named after the measurement's file.
void NameDocument() {
    const QString file = QFileInfo(Data().DataFile).completeBaseName();
    SetDocumentName((file.isEmpty() ? QStringLiteral("Fluxmere") : file) + QStringLiteral("-exposure"));
}
}  // namespace

void DrawExposureReport(PrinterPage &page, const ExposureChoice &choice) {
    ExposureReport(choice).Draw(page);
}

void PrintExposureReport(const ExposureChoice &choice) {
    TrapVoid("PrintExposureReport", [&] {
        if (!Data().DataPresent || Data().DataCount < 1) {
            Host().MessBox(ResString(4468), {}, 2, 1);
            return;
        }
        EnsurePrinterUi();
        NameDocument();
        clsPrintDialog dialog;
        dialog.Flags = print_flags::HidePrintToFile | print_flags::NoPageNums | print_flags::NoSelection;
        if (!dialog.ShowPrinter()) return;
        // The report is laid out on portrait pages, whatever the last print used.
        if (!dialog.SetPortrait(nullptr)) {
            Host().MessBox(ResString(16), {}, -1, -1);
            return;
        }
        const ExposureReport report(choice);
        PreviewAndPrint(nullptr, [&](PrinterPage &page) { report.Draw(page); });
    });
}

void WriteExposureReport(const QString &pdf, const ExposureChoice &choice) {
    const ExposureReport report(choice);
    PrintToPdf(pdf, false, [&](PrinterPage &page) { report.Draw(page); });
}
}  // namespace fm
