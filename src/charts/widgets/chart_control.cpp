#include "charts/widgets/chart_control.h"

#include "charts/widgets/trace_graph.h"
#include "charts/widgets/wmf_device.h"
#include "core/fault.h"
#include "core/safe_file.h"

#include <qcustomplot.h>
#include <QImage>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <QVBoxLayout>
#include <climits>
#include <cmath>
#include <limits>

namespace fm {
namespace {
// Ticks at whole point positions, each labelled with its point's own text.
class LabelTicker : public QCPAxisTicker {
public:
    explicit LabelTicker(const ChartControl *chart) : chart_(chart) {}

protected:
    double getTickStep(const QCPRange &range) override {
        // Whole positions only, spaced so that the labels never overlap: a date and
        // time takes about 90 pixels across, an upright label about 18.
        // The widget's own width: the axis rect may not be laid out yet on the first draw.
        const QCPAxis *axis = chart_->Plot()->xAxis;
        const double room = std::abs(axis->tickLabelRotation()) > 45 ? 18 : 90;
        const double width = std::max(0, chart_->Plot()->viewport().width() - 110);
        const double labels = std::max(1.0, std::floor(width / room));
        return std::max(1.0, std::ceil(range.size() / labels));
    }
    QString getTickLabel(double tick, const QLocale &, QChar, int) override {
        const long i = std::lround(tick);
        return i >= 0 && i <= INT_MAX ? chart_->Label(int(i)) : QString();
    }

private:
    const ChartControl *chart_;
};
}  // namespace

ChartControl::ChartControl(QWidget *parent) : QWidget(parent), plot_(new QCustomPlot(this)) {
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->addWidget(plot_);
    plot_->setNoAntialiasingOnDrag(true);
    plot_->xAxis->setTicker(QSharedPointer<QCPAxisTicker>(new LabelTicker(this)));
    plot_->xAxis->setTickLabelFont(QFont(font().family(), 8));
    plot_->yAxis->setNumberFormat(QStringLiteral("f"));
    plot_->yAxis->setNumberPrecision(2);
    crossV_ = new QCPItemStraightLine(plot_);
    crossH_ = new QCPItemStraightLine(plot_);
    for (auto *l : {crossV_, crossH_}) {
        l->setPen(QPen(Qt::red, 1));
        l->setVisible(false);
    }
    // A click is a press and a release within a few pixels; a longer drag is the zoom's.
    connect(plot_, &QCustomPlot::mousePress, this, [this](QMouseEvent *e) { pressPos_ = e->pos(); });
    connect(plot_, &QCustomPlot::mouseRelease, this, [this](QMouseEvent *e) {
        if (e->button() != Qt::LeftButton || (e->pos() - pressPos_).manhattanLength() > 3) return;
        int point = -1;
        const int s = SeriesAt(e->pos(), &point);
        if (s >= 0) emit pointClicked(s, point);
    });
    connect(plot_->xAxis, qOverload<const QCPRange &>(&QCPAxis::rangeChanged), this, [this] {
        HideCross();
        emit rangeChanged();
    });
}

void ChartControl::RemoveAllSeries() {
    plot_->clearPlottables();
    series_.clear();
    labels_.clear();
    labelFn_ = nullptr;
}

int ChartControl::AddSeries(Kind kind) {
    QCPAbstractPlottable *p = nullptr;
    if (kind == Bars) {
        auto *bars = new QCPBars(plot_->xAxis, plot_->yAxis);
        bars->setWidth(0.7);
        p = bars;
    } else {
        auto *g = new TraceGraph(plot_->xAxis, plot_->yAxis);
        g->setName(QStringLiteral("Graph ") + QString::number(plot_->graphCount()));
        g->setAdaptiveSampling(true);  // keeps a million points fast
        g->setAntialiased(kind != FastLine);
        p = g;
    }
    // The plot's own selection would restyle a clicked trace; clicks are ours alone.
    p->setSelectable(QCP::stNone);
    series_.push_back({kind, p, std::make_shared<TraceValues>()});
    return int(series_.size()) - 1;
}

int ChartControl::SeriesAt(QPointF pos, int *point) const {
    int best = -1;
    double bestDistance = plot_->selectionTolerance();
    for (int s = int(series_.size()) - 1; s >= 0; --s) {  // the trace drawn on top first
        const Series &series = series_[size_t(s)];
        if (!series.plottable->realVisibility()) continue;  // a hidden trace takes no click
        QVariant details;
        const double distance = series.plottable->selectTest(pos, false, &details);
        if (distance < 0 || distance > bestDistance || (best >= 0 && distance == bestDistance)) continue;
        // The nearest point, or on a line between points far apart, the one under the pointer.
        const TraceValues &values = *series.values;
        long i = details.value<QCPDataSelection>().dataRange().begin();
        if (i < 0 || size_t(i) >= values.size() || std::isnan(values[size_t(i)]))
            i = std::lround(plot_->xAxis->pixelToCoord(pos.x()));
        if (i < 0 || size_t(i) >= values.size() || std::isnan(values[size_t(i)])) continue;
        best = s;
        bestDistance = distance;
        *point = int(i);
    }
    return best;
}

void ChartControl::SetSeriesTitle(int s, const QString &title) {
    series_[size_t(s)].plottable->setName(title);
}

void ChartControl::SetSeriesColor(int s, QColor c) {
    QCPAbstractPlottable *p = series_[size_t(s)].plottable;
    p->setPen(QPen(c, 1));
    if (series_[size_t(s)].kind == Bars) p->setBrush(c);
}

void ChartControl::SetActive(int s, bool active) {
    series_[size_t(s)].plottable->setVisible(active);
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

bool ChartControl::Active(int s) const {
    return series_[size_t(s)].plottable->visible();
}

void ChartControl::Add(int s, double value, const QString &label) {
    TraceValues &v = *series_[size_t(s)].values;
    if (!label.isNull() && labels_.size() <= v.size()) {
        labels_.resize(v.size());
        labels_.push_back(label);
    }
    v.push_back(value);
}

QString ChartControl::Label(int point) const {
    if (labelFn_) {
        for (const Series &s : series_)
            if (size_t(point) < s.values->size()) return labelFn_(point);
        return {};
    }
    return size_t(point) < labels_.size() ? labels_[size_t(point)] : QString();
}

void ChartControl::AddNull(int s, const QString &label) {
    Add(s, std::numeric_limits<double>::quiet_NaN(), label);
}

void ChartControl::SetValues(int s, std::vector<float> values) {
    series_[size_t(s)].values->Assign(std::move(values));
}

void ChartControl::SetValues(int s, std::vector<double> values) {
    series_[size_t(s)].values->Assign(std::move(values));
}

void ChartControl::ClearSeries(int s) {
    series_[size_t(s)].values->clear();
    if (auto *t = dynamic_cast<TraceGraph *>(series_[size_t(s)].plottable))
        t->Detach();
    else if (auto *g = qobject_cast<QCPGraph *>(series_[size_t(s)].plottable))
        g->data()->clear();
    else if (auto *b = qobject_cast<QCPBars *>(series_[size_t(s)].plottable))
        b->data()->clear();
}

void ChartControl::Append(int s, double value) {
    Series &series = series_[size_t(s)];
    const double key = double(series.values->size());
    series.values->push_back(value);
    if (auto *t = dynamic_cast<TraceGraph *>(series.plottable); t && t->Attached())
        t->Attach(series.values);
    else if (auto *g = qobject_cast<QCPGraph *>(series.plottable))
        g->addData(key, value);
    else if (auto *b = qobject_cast<QCPBars *>(series.plottable))
        b->addData(key, value);
    plot_->xAxis->setRange(0, std::max(1.0, key));
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

int ChartControl::Count(int s) const {
    return int(series_[size_t(s)].values->size());
}

void ChartControl::Refresh() {
    size_t n = 0;
    for (Series &s : series_) {
        const TraceValues &values = *s.values;
        if (auto *g = dynamic_cast<TraceGraph *>(s.plottable)) {
            // Long traces are drawn from our copy; short ones the plot holds, as live mode grows them.
            if (values.size() >= kOwnTraceFrom) {
                g->Attach(s.values);
            } else {
                g->Detach();
                QVector<QCPGraphData> points(qsizetype(values.size()));
                for (size_t i = 0; i < values.size(); ++i)
                    points[qsizetype(i)] = QCPGraphData(double(i), values[i]);
                g->data()->set(points, true);
            }
            // Smooth lines cost seconds on a dense million-point trace; a full memory stays smooth.
            g->setAntialiased(s.kind != FastLine && values.size() <= 20000);
        } else if (auto *b = qobject_cast<QCPBars *>(s.plottable)) {
            QVector<QCPBarsData> bars(qsizetype(values.size()));
            for (size_t i = 0; i < values.size(); ++i) bars[qsizetype(i)] = QCPBarsData(double(i), values[i]);
            b->data()->set(bars, true);
        }
        n = std::max(n, values.size());
    }
    const double pad = series_.empty() || series_[0].kind != Bars ? 0 : 0.6;
    plot_->xAxis->setRange(-pad, std::max(1.0, double(n) - 1 + pad));
    plot_->replot();
}

void ChartControl::SetTitle(const QString &title) {
    if (!title_) {
        plot_->plotLayout()->insertRow(0);
        title_ = new QCPTextElement(plot_, title, QFont(font().family(), 10, QFont::Bold));
        plot_->plotLayout()->addElement(0, 0, title_);
    }
    title_->setText(title);
}

void ChartControl::SetBackColor(QColor c) {
    plot_->axisRect()->setBackground(c);
}

void ChartControl::SetLegendVisible(bool on) {
    plot_->legend->setVisible(on);
}

void ChartControl::SetAllowZoom(bool on) {
    plot_->setInteraction(QCP::iRangeZoom, on);
    plot_->setSelectionRectMode(on ? QCP::srmZoom : QCP::srmNone);
    plot_->axisRect()->setRangeZoom(Qt::Horizontal | Qt::Vertical);
}

void ChartControl::UndoZoom() {
    size_t n = 0;
    for (const Series &s : series_) n = std::max(n, s.values->size());
    plot_->xAxis->setRange(0, std::max(1.0, double(n) - 1));
    plot_->yAxis->setRange(fullMin_, fullMax_);
    plot_->replot();
}

void ChartControl::SetLeftRange(double minimum, double maximum, double increment) {
    fullMin_ = minimum;
    fullMax_ = maximum;
    plot_->yAxis->setRange(minimum, maximum);
    if (!log_) {
        auto ticker = QSharedPointer<QCPAxisTickerFixed>(new QCPAxisTickerFixed);
        if (increment > 0) {
            ticker->setTickStep(increment);
            ticker->setScaleStrategy(QCPAxisTickerFixed::ssMultiples);  // no crowded labels on small charts
            plot_->yAxis->setTicker(ticker);
        } else {
            plot_->yAxis->setTicker(QSharedPointer<QCPAxisTicker>(new QCPAxisTicker));
        }
    }
}

void ChartControl::SetLogarithmic(bool on) {
    log_ = on;
    plot_->yAxis->setScaleType(on ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
    if (on) {
        auto ticker = QSharedPointer<QCPAxisTickerLog>(new QCPAxisTickerLog);
        ticker->setLogBase(10);
        plot_->yAxis->setTicker(ticker);
        plot_->yAxis->setNumberFormat(QStringLiteral("gb"));
    } else {
        plot_->yAxis->setNumberFormat(QStringLiteral("f"));
    }
}

void ChartControl::SetLeftTitle(const QString &title) {
    plot_->yAxis->setLabel(title);
}
void ChartControl::SetLeftDecimals(int decimals) {
    plot_->yAxis->setNumberPrecision(decimals);
}
void ChartControl::SetBottomTitle(const QString &title) {
    plot_->xAxis->setLabel(title);
}
// Angles count anticlockwise, QCustomPlot's clockwise.
void ChartControl::SetBottomLabelAngle(int degrees) {
    plot_->xAxis->setTickLabelRotation(-degrees);
}

QPointF ChartControl::PointPosition(int s, int i) const {
    const TraceValues &v = *series_[size_t(s)].values;
    if (i < 0 || size_t(i) >= v.size()) return {};
    return {plot_->xAxis->coordToPixel(i), plot_->yAxis->coordToPixel(v[size_t(i)])};
}

void ChartControl::SetLevelLine(double value, QColor color) {
    if (!level_) level_ = new QCPItemStraightLine(plot_);
    level_->point1->setCoords(0, value);
    level_->point2->setCoords(1, value);
    level_->setPen(QPen(color, 1, Qt::DashLine));
}

void ChartControl::ShowCross(int s, int i) {
    const TraceValues &v = *series_[size_t(s)].values;
    if (i < 0 || size_t(i) >= v.size() || std::isnan(v[size_t(i)])) {
        HideCross();  // no point there to mark
        return;
    }
    crossV_->point1->setCoords(i, 0);
    crossV_->point2->setCoords(i, 1);
    crossH_->point1->setCoords(0, v[size_t(i)]);
    crossH_->point2->setCoords(1, v[size_t(i)]);
    crossV_->setVisible(true);
    crossH_->setVisible(true);
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ChartControl::HideCross() {
    if (!crossV_->visible()) return;
    crossV_->setVisible(false);
    crossH_->setVisible(false);
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

bool ChartControl::CrossVisible() const {
    return crossV_->visible();
}

void ChartControl::resizeEvent(QResizeEvent *e) {
    HideCross();
    QWidget::resizeEvent(e);
}

// The cross marks a place for the person at the screen; an image shows the chart alone.
template <class Draw>
bool ChartControl::WithoutCross(Draw draw) {
    const bool shown = crossV_->visible();
    crossV_->setVisible(false);
    crossH_->setVisible(false);
    const bool ok = draw();
    crossV_->setVisible(shown);
    crossH_->setVisible(shown);
    return ok;
}

// The cross is put back whatever became of the export.
bool ChartControl::ExportJpeg(const QString &file, int width, int height, int quality) {
    return WithoutCross([&] {
        return Trap("ExportJpeg", false, [&] {
            SafeFile::Render(file,
                             [&](QIODevice &out) { return Raster(out, width, height, "JPG", quality); });
            return true;
        });
    });
}

bool ChartControl::Export(const QString &file, int width, int height) {
    return WithoutCross([&] {
        return Trap("Export", false, [&] {
            ExportAs(file, width, height);
            return true;
        });
    });
}

// An image of exactly the size asked for, whatever the screen's pixel ratio: a window
// pixmap would take the ratio of the screen it was made for.
bool ChartControl::Raster(QIODevice &out, int width, int height, const char *format, int quality) {
    QImage image(width, height, QImage::Format_RGB32);
    image.setDevicePixelRatio(1);
    image.fill(Qt::white);
    QCPPainter painter;
    if (!painter.begin(&image)) return false;
    plot_->toPainter(&painter, width, height);
    painter.end();
    return image.save(&out, format, quality);
}

// Each format is drawn into memory and written by the safe writer, so a failure never
// leaves a cut image in place of a good one.
void ChartControl::ExportAs(const QString &file, int width, int height) {
    const QString lower = file.toLower();
    const auto draw = [&](QPaintDevice *device) {
        QCPPainter painter;
        if (!painter.begin(device)) return false;
        plot_->toPainter(&painter, width, height);
        return painter.end();
    };
    if (lower.endsWith(QLatin1String(".png"))) {
        SafeFile::Render(file, [&](QIODevice &out) { return Raster(out, width, height, "PNG", -1); });
    } else if (lower.endsWith(QLatin1String(".pdf"))) {
        SafeFile::Render(file, [&](QIODevice &out) {
            QPdfWriter pdf(&out);
            pdf.setResolution(72);  // a pixel of the chart is a point of the page
            pdf.setPageLayout(QPageLayout(
                QPageSize(QSizeF(width, height), QPageSize::Point, QString(), QPageSize::ExactMatch),
                QPageLayout::Portrait, QMarginsF()));
            pdf.setCreator(FaultSource());
            return draw(&pdf);
        });
    } else if (lower.endsWith(QLatin1String(".wmf"))) {
        WmfDevice wmf(width, height);
        if (!draw(&wmf) || !wmf.Save(file))
            Raise(err::DeviceIO, QStringLiteral("The picture could not be drawn"));
    } else if (lower.endsWith(QLatin1String(".svg"))) {
        SafeFile::Render(file, [&](QIODevice &out) {
            QSvgGenerator svg;
            svg.setOutputDevice(&out);
            svg.setSize(QSize(width, height));
            svg.setViewBox(QRect(0, 0, width, height));
            return draw(&svg);
        });
    } else {
        SafeFile::Render(file, [&](QIODevice &out) { return Raster(out, width, height, "JPG", 100); });
    }
}

namespace {
// The chart's fonts in pixels while it is drawn on a page: a font in points grows with the
// device's resolution on top of the painter's scale, and would no longer fit the layout.
class PixelFonts {
public:
    explicit PixelFonts(QCustomPlot *plot) {
        for (QCPAxis *axis : plot->axisRect()->axes()) {
            Keep(axis, &QCPAxis::labelFont, &QCPAxis::setLabelFont);
            Keep(axis, &QCPAxis::tickLabelFont, &QCPAxis::setTickLabelFont);
        }
        Keep(plot->legend, &QCPLegend::font, &QCPLegend::setFont);
        for (int i = 0; i < plot->legend->itemCount(); ++i)
            Keep(plot->legend->item(i), &QCPAbstractLegendItem::font, &QCPAbstractLegendItem::setFont);
        for (int i = 0; i < plot->plotLayout()->elementCount(); ++i)
            if (auto *text = qobject_cast<QCPTextElement *>(plot->plotLayout()->elementAt(i)))
                Keep(text, &QCPTextElement::font, &QCPTextElement::setFont);
    }
    ~PixelFonts() {
        for (auto &undo : undo_) undo();
    }

private:
    template <class T>
    void Keep(T *owner, QFont (T::*get)() const, void (T::*set)(const QFont &)) {
        const QFont old = (owner->*get)();
        if (old.pointSizeF() <= 0) return;
        QFont pixels = old;
        pixels.setPixelSize(std::max(1, int(std::lround(old.pointSizeF() * 96 / 72))));
        (owner->*set)(pixels);
        undo_.push_back([owner, set, old] { (owner->*set)(old); });
    }
    std::vector<std::function<void()>> undo_;
};
}  // namespace

void ChartControl::DrawForPrint(QCPPainter &painter, const QRectF &rect, QSize minimum) {
    WithoutCross([&] {
        const double scale = std::min(rect.width() / minimum.width(), rect.height() / minimum.height());
        if (!(scale > 0)) return false;
        PixelFonts fonts(plot_);
        painter.save();
        painter.setClipRect(rect);
        painter.translate(rect.topLeft());
        painter.scale(scale, scale);
        painter.setMode(QCPPainter::pmVectorized);
        painter.setMode(QCPPainter::pmNoCaching);
        painter.setMode(QCPPainter::pmNonCosmetic);  // a hairline would vanish at 1200 dpi
        plot_->toPainter(&painter, int(rect.width() / scale), int(rect.height() / scale));
        painter.restore();
        return true;
    });
}

}  // namespace fm
