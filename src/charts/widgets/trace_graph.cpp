#include "charts/widgets/trace_graph.h"

#include <cmath>
#include <limits>

namespace fm {
namespace {
constexpr int64_t kSmall = 64;
constexpr int64_t kLarge = kSmall * 64;
constexpr double kInf = std::numeric_limits<double>::infinity();
}  // namespace

void TraceValues::push_back(double v) {
    if (!floats_.empty()) {  // a double joins: the floats widen, exactly
        doubles_.assign(floats_.begin(), floats_.end());
        floats_ = {};
    }
    doubles_.push_back(v);
}

void TraceValues::clear() {
    floats_ = {};
    doubles_ = {};
}

void TraceValues::Assign(std::vector<float> v) {
    doubles_ = {};
    floats_ = std::move(v);
}

void TraceValues::Assign(std::vector<double> v) {
    floats_ = {};
    doubles_ = std::move(v);
}

void TraceGraph::Attach(std::shared_ptr<const TraceValues> values) {
    values_ = std::move(values);
    const TraceValues &v = *values_;
    const int64_t n = Count();
    smallMin_.assign(size_t((n + kSmall - 1) / kSmall), kInf);
    smallMax_.assign(smallMin_.size(), -kInf);
    for (int64_t i = 0; i < n; ++i) {
        const double x = v[size_t(i)];
        if (std::isnan(x)) continue;
        double &low = smallMin_[size_t(i / kSmall)], &high = smallMax_[size_t(i / kSmall)];
        low = std::min(low, x);
        high = std::max(high, x);
    }
    largeMin_.assign(size_t((n + kLarge - 1) / kLarge), kInf);
    largeMax_.assign(largeMin_.size(), -kInf);
    for (size_t b = 0; b < smallMin_.size(); ++b) {
        largeMin_[b / 64] = std::min(largeMin_[b / 64], smallMin_[b]);
        largeMax_[b / 64] = std::max(largeMax_[b / 64], smallMax_[b]);
    }
    mDataContainer->clear();
    if (n > 0) mDataContainer->add(QCPGraphData(0, v[0]));
}

void TraceGraph::Detach() {
    values_.reset();
    smallMin_ = smallMax_ = largeMin_ = largeMax_ = {};
    mDataContainer->clear();
}

// As the container's findBegin and findEnd with the expanded range, on the keys 0 .. n-1.
int64_t TraceGraph::FindBegin(double key) const {
    const int64_t n = Count();
    int64_t k = !(key > 0) ? 0 : key > double(n - 1) ? n : int64_t(std::ceil(key));
    return k > 0 ? k - 1 : k;
}

int64_t TraceGraph::FindEnd(double key) const {
    const int64_t n = Count();
    int64_t k = std::isnan(key) ? n : key < 0 ? 0 : key >= double(n - 1) ? n : int64_t(std::floor(key)) + 1;
    return k < n ? k + 1 : k;
}

void TraceGraph::Span(int64_t from, int64_t to, double &low, double &high) const {
    const TraceValues &v = *values_;
    low = kInf;
    high = -kInf;
    const auto one = [&](int64_t i) {
        const double x = v[size_t(i)];
        if (std::isnan(x)) return;
        low = std::min(low, x);
        high = std::max(high, x);
    };
    while (from < to && from % kSmall) one(from++);
    while (from + kSmall <= to) {
        if (from % kLarge == 0 && from + kLarge <= to) {
            low = std::min(low, largeMin_[size_t(from / kLarge)]);
            high = std::max(high, largeMax_[size_t(from / kLarge)]);
            from += kLarge;
        } else {
            low = std::min(low, smallMin_[size_t(from / kSmall)]);
            high = std::max(high, smallMax_[size_t(from / kSmall)]);
            from += kSmall;
        }
    }
    while (from < to) one(from++);
}

// The plot's own sampling, run over the intervals rather than over every point: an
// interval's first and last points, its count and its extremes are all the plot takes
// from it. A first point without data keeps the extremes without data, as there.
void TraceGraph::getOptimizedLineData(QVector<QCPGraphData> *lineData,
                                      const QCPGraphDataContainer::const_iterator &begin,
                                      const QCPGraphDataContainer::const_iterator &end) const {
    if (!values_) {
        QCPGraph::getOptimizedLineData(lineData, begin, end);
        return;
    }
    QCPAxis *keyAxis = mKeyAxis.data();
    if (!lineData || !keyAxis || !mValueAxis) return;
    const TraceValues &v = *values_;
    const int64_t b = FindBegin(keyAxis->range().lower), e = FindEnd(keyAxis->range().upper);
    if (b >= e) return;
    const auto key = [](int64_t i) { return double(i); };
    const int dataCount = int(e - b);
    int maxCount = std::numeric_limits<int>::max();
    if (mAdaptiveSampling) {
        const double keyPixelSpan = qAbs(keyAxis->coordToPixel(key(b)) - keyAxis->coordToPixel(key(e - 1)));
        if (2 * keyPixelSpan + 2 < static_cast<double>(std::numeric_limits<int>::max()))
            maxCount = int(2 * keyPixelSpan + 2);
    }
    if (!mAdaptiveSampling || dataCount < maxCount) {
        lineData->resize(dataCount);
        for (int64_t i = b; i < e; ++i) (*lineData)[int(i - b)] = QCPGraphData(key(i), v[size_t(i)]);
        return;
    }
    const int reversedFactor = keyAxis->pixelOrientation();
    const int reversedRound = reversedFactor == -1 ? 1 : 0;
    const bool keyEpsilonVariable = keyAxis->scaleType() == QCPAxis::stLogarithmic;
    double startKey = keyAxis->pixelToCoord(int(keyAxis->coordToPixel(key(b)) + reversedRound));
    double lastEndKey = startKey;
    double eps =
        qAbs(startKey - keyAxis->pixelToCoord(keyAxis->coordToPixel(startKey) + 1.0 * reversedFactor));
    int64_t first = b;
    while (true) {
        // The interval runs up to the first key that is not below startKey + eps.
        const double limit = startKey + eps;
        int64_t next = e;
        if (limit <= key(e - 1)) next = std::max(first + 1, int64_t(std::ceil(limit)));
        const double firstValue = v[size_t(first)];
        double low = firstValue, high = firstValue;
        if (!std::isnan(firstValue) && next - first >= 2) {
            double l, h;
            Span(first + 1, next, l, h);
            low = std::min(low, l);
            high = std::max(high, h);
        }
        if (next - first >= 2) {
            if (lastEndKey < startKey - eps) lineData->append(QCPGraphData(startKey + eps * 0.2, firstValue));
            lineData->append(QCPGraphData(startKey + eps * 0.25, low));
            lineData->append(QCPGraphData(startKey + eps * 0.75, high));
            if (next < e && key(next) > startKey + eps * 2)
                lineData->append(QCPGraphData(startKey + eps * 0.8, v[size_t(next - 1)]));
        } else {
            lineData->append(QCPGraphData(key(first), firstValue));
        }
        if (next >= e) break;
        lastEndKey = key(next - 1);
        first = next;
        startKey = keyAxis->pixelToCoord(int(keyAxis->coordToPixel(key(next)) + reversedRound));
        if (keyEpsilonVariable)
            eps = qAbs(startKey -
                       keyAxis->pixelToCoord(keyAxis->coordToPixel(startKey) + 1.0 * reversedFactor));
    }
}

double TraceGraph::PointDistance(const QPointF &pixel, int64_t &closest) const {
    closest = Count();
    if (mLineStyle == lsNone && mScatterStyle.isNone()) return -1.0;
    double minDistSqr = std::numeric_limits<double>::max();
    const double tolerance = mParentPlot->selectionTolerance();
    double keyMin, keyMax, dummy;
    pixelsToCoords(pixel - QPointF(tolerance, tolerance), keyMin, dummy);
    pixelsToCoords(pixel + QPointF(tolerance, tolerance), keyMax, dummy);
    if (keyMin > keyMax) qSwap(keyMin, keyMax);
    const TraceValues &v = *values_;
    for (int64_t i = FindBegin(keyMin), end = FindEnd(keyMax); i < end; ++i) {
        const double d = QCPVector2D(coordsToPixels(double(i), v[size_t(i)]) - pixel).lengthSquared();
        if (d < minDistSqr) {
            minDistSqr = d;
            closest = i;
        }
    }
    if (mLineStyle != lsNone) {
        QVector<QPointF> lines;
        getLines(&lines, QCPDataRange(0, dataCount()));
        const QCPVector2D p(pixel);
        const int step = mLineStyle == lsImpulse ? 2 : 1;
        for (int i = 0; i < lines.size() - 1; i += step)
            minDistSqr = std::min(minDistSqr, p.distanceSquaredToLine(lines.at(i), lines.at(i + 1)));
    }
    return qSqrt(minDistSqr);
}

double TraceGraph::selectTest(const QPointF &pos, bool onlySelectable, QVariant *details) const {
    if (!values_) return QCPGraph::selectTest(pos, onlySelectable, details);
    if ((onlySelectable && mSelectable == QCP::stNone) || values_->empty()) return -1;
    if (!mKeyAxis || !mValueAxis) return -1;
    if (!mKeyAxis.data()->axisRect()->rect().contains(pos.toPoint()) &&
        !mParentPlot->interactions().testFlag(QCP::iSelectPlottablesBeyondAxisRect))
        return -1;
    int64_t closest = 0;
    const double result = PointDistance(pos, closest);
    if (details) details->setValue(QCPDataSelection(QCPDataRange(int(closest), int(closest) + 1)));
    return result;
}

}  // namespace fm
