#pragma once
// The chart control the chart windows rely on, over QCustomPlot: series by index
// (line, bars, fast line), points with a label each and null points that break a line,
// axis settings, a title, zoom, point positions, and export.
#include <QColor>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

class QCustomPlot;
class QCPAbstractPlottable;
class QCPPainter;
class QCPItemStraightLine;
class QCPTextElement;
class QIODevice;

namespace fm {
class TraceValues;

class ChartControl : public QWidget {
    Q_OBJECT
public:
    enum Kind { Line = 0, Bars = 1, FastLine = 6 };
    explicit ChartControl(QWidget *parent = nullptr);

    void RemoveAllSeries();
    int AddSeries(Kind kind);
    int SeriesCount() const { return int(series_.size()); }
    void SetSeriesTitle(int s, const QString &title);
    void SetSeriesColor(int s, QColor c);
    void SetActive(int s, bool active);
    bool Active(int s) const;
    // Points go at the next whole x position; labels are kept once for all series.
    void Add(int s, double value, const QString &label = QString());
    void AddNull(int s, const QString &label = QString());
    // All points of a series at once, NaN for a null point; the axes come as floats.
    void SetValues(int s, std::vector<float> values);
    void SetValues(int s, std::vector<double> values);
    // Labels made on demand for the ticks on show: a million date texts made up front
    // would cost seconds. Takes the place of the labels given with the points.
    using LabelFunction = std::function<QString(int point)>;
    void SetLabelFunction(LabelFunction f) { labelFn_ = std::move(f); }
    QString Label(int point) const;
    void ClearSeries(int s);
    // A point at the end of a series that is already on show: the plot takes it at once,
    // and redraws at the next turn of the event loop.
    void Append(int s, double value);
    int Count(int s) const;
    // Builds the plot after the points were added (the control draws on demand).
    void Refresh();

    void SetTitle(const QString &title);
    void SetBackColor(QColor c);
    void SetLegendVisible(bool on);
    void SetAllowZoom(bool on);
    void UndoZoom();

    // The left axis.
    void SetLeftRange(double minimum, double maximum, double increment);
    void SetLogarithmic(bool on);
    bool Logarithmic() const { return log_; }
    void SetLeftTitle(const QString &title);
    void SetLeftDecimals(int decimals);
    void SetBottomTitle(const QString &title);
    // 90 stands the bottom labels upright, so that many narrow ones fit.
    void SetBottomLabelAngle(int degrees);

    // Pixel position of point i of series s, in the chart's own coordinates.
    QPointF PointPosition(int s, int i) const;
    // A horizontal line across the plot at a value of the left axis (the threshold).
    void SetLevelLine(double value, QColor color);
    // The red cross lines on a point; hidden by a zoom or a resize.
    void ShowCross(int s, int i);
    void HideCross();
    bool CrossVisible() const;

    // Images: JPEG at the size and quality given, PNG, SVG, PDF by the extension. A failure
    // is reported with its cause and the file stays as it was.
    bool ExportJpeg(const QString &file, int width, int height, int quality);
    bool Export(const QString &file, int width, int height);

    // Draws the chart into `rect` of a page (device units), laid out as on a screen of at
    // least `minimum` pixels and scaled up to fill it: fonts and lines keep their share of
    // the chart at any resolution. The cross is left out.
    void DrawForPrint(QCPPainter &painter, const QRectF &rect, QSize minimum);

    QCustomPlot *Plot() const { return plot_; }

signals:
    void pointClicked(int series, int point);
    void rangeChanged();

protected:
    void resizeEvent(QResizeEvent *e) override;

private:
    // The trace under a pixel and its point there, or -1.
    int SeriesAt(QPointF pos, int *point) const;
    template <class Draw>
    bool WithoutCross(Draw draw);
    void ExportAs(const QString &file, int width, int height);
    bool Raster(QIODevice &out, int width, int height, const char *format, int quality);

    struct Series {
        Kind kind;
        QCPAbstractPlottable *plottable;
        std::shared_ptr<TraceValues> values;  // NaN for a null point; shared with the trace drawn
    };
    // From this many points a trace is drawn from its values, not from the plot's container.
    static constexpr size_t kOwnTraceFrom = 100000;
    std::vector<Series> series_;
    std::vector<QString> labels_;
    LabelFunction labelFn_;
    QCustomPlot *plot_;
    QCPTextElement *title_ = nullptr;
    QCPItemStraightLine *level_ = nullptr, *crossV_ = nullptr, *crossH_ = nullptr;
    bool log_ = false;
    QPoint pressPos_;
    double fullMin_ = 0, fullMax_ = 1;
};

}  // namespace fm
