#pragma once
// A time trace of many points, drawn from the chart's own copy of its values instead of
// the plot's container of 16-byte points (a year of samples would take 160 MB a trace
// there). The line is the one the plot's adaptive sampling would draw from the whole
// trace, point for point, worked out a pixel column at a time from minima and maxima of
// blocks; a click finds the same point. Points lie at keys 0, 1, 2 ...
#include <qcustomplot.h>

#include <memory>
#include <vector>

namespace fm {

// The values of one trace, held as the type they come in: the axes of a sample are floats.
class TraceValues {
public:
    size_t size() const { return floats_.empty() ? doubles_.size() : floats_.size(); }
    bool empty() const { return size() == 0; }
    double operator[](size_t i) const { return floats_.empty() ? doubles_[i] : double(floats_[i]); }
    void push_back(double v);
    void clear();
    void Assign(std::vector<float> v);
    void Assign(std::vector<double> v);

private:
    std::vector<float> floats_;
    std::vector<double> doubles_;
};

class TraceGraph : public QCPGraph {
public:
    TraceGraph(QCPAxis *keyAxis, QCPAxis *valueAxis) : QCPGraph(keyAxis, valueAxis) {}
    // Draws from values from now on; the plot's container keeps one stand-in point, so
    // that the plot still sees a trace that has data.
    void Attach(std::shared_ptr<const TraceValues> values);
    // Back to the plot's container (emptied).
    void Detach();
    bool Attached() const { return bool(values_); }

    double selectTest(const QPointF &pos, bool onlySelectable, QVariant *details = nullptr) const override;

protected:
    void getOptimizedLineData(QVector<QCPGraphData> *lineData,
                              const QCPGraphDataContainer::const_iterator &begin,
                              const QCPGraphDataContainer::const_iterator &end) const override;

private:
    int64_t Count() const { return int64_t(values_->size()); }
    int64_t FindBegin(double key) const;
    int64_t FindEnd(double key) const;
    // Least and greatest value of [from, to) that is a number; +inf and -inf when none is.
    void Span(int64_t from, int64_t to, double &low, double &high) const;
    double PointDistance(const QPointF &pixel, int64_t &closest) const;

    std::shared_ptr<const TraceValues> values_;
    // Minima and maxima of blocks of kSmall and kLarge points.
    std::vector<double> smallMin_, smallMax_, largeMin_, largeMax_;
};

}  // namespace fm
