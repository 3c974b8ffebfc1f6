#include "charts/widgets/wmf_device.h"

#include "core/cp1252.h"
#include "core/fault.h"
#include "core/safe_file.h"

#include <QPaintEngine>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <map>

namespace fm {
namespace {
// Logical units per pixel: a finer grid than the pixels keeps thin lines where they belong.
constexpr int kScale = 10;
constexpr int kDpi = 96;

enum : uint16_t {
    META_EOF = 0x0000,
    META_SAVEDC = 0x001E,
    META_SETBKMODE = 0x0102,
    META_SETMAPMODE = 0x0103,
    META_SETPOLYFILLMODE = 0x0106,
    META_RESTOREDC = 0x0127,
    META_SELECTOBJECT = 0x012D,
    META_SETTEXTALIGN = 0x012E,
    META_DELETEOBJECT = 0x01F0,
    META_SETTEXTCOLOR = 0x0209,
    META_SETWINDOWORG = 0x020B,
    META_SETWINDOWEXT = 0x020C,
    META_CREATEPENINDIRECT = 0x02FA,
    META_CREATEFONTINDIRECT = 0x02FB,
    META_CREATEBRUSHINDIRECT = 0x02FC,
    META_POLYGON = 0x0324,
    META_POLYLINE = 0x0325,
    META_INTERSECTCLIPRECT = 0x0416,
    META_RECTANGLE = 0x041B,
    META_EXTTEXTOUT = 0x0A32,
};

uint32_t ColorRef(const QColor &c) {
    return uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16;
}

int16_t Clamp16(double v) {
    return int16_t(std::lround(std::clamp(v, -32768.0, 32767.0)));
}

class Record {
public:
    explicit Record(uint16_t function) : function_(function) {}
    Record &W(int v) {
        params_.push_back(uint16_t(int16_t(v)));
        return *this;
    }
    Record &D(uint32_t v) {
        params_.push_back(uint16_t(v & 0xFFFF));
        params_.push_back(uint16_t(v >> 16));
        return *this;
    }
    Record &Bytes(const QByteArray &b) {  // padded to a whole word
        for (qsizetype i = 0; i < b.size(); i += 2)
            params_.push_back(uint16_t(uint8_t(b[i])) | uint16_t(i + 1 < b.size() ? uint8_t(b[i + 1]) : 0)
                                                            << 8);
        return *this;
    }
    uint32_t Words() const { return uint32_t(3 + params_.size()); }
    void AppendTo(QByteArray &out) const {
        auto put16 = [&](uint16_t v) {
            out.append(char(v & 0xFF));
            out.append(char(v >> 8));
        };
        put16(uint16_t(Words() & 0xFFFF));
        put16(uint16_t(Words() >> 16));
        put16(function_);
        for (uint16_t p : params_) put16(p);
    }

private:
    uint16_t function_;
    std::vector<uint16_t> params_;
};
}  // namespace

class WmfEngine : public QPaintEngine {
public:
    WmfEngine(int width, int height) : QPaintEngine(AllFeatures), width_(width), height_(height) {}

    bool begin(QPaintDevice *) override {
        body_.clear();
        objects_.clear();
        cache_.clear();
        maxRecord_ = 0;
        file_.clear();
        saved_ = false;
        pen_ = brush_ = font_ = -1;
        Emit(Record(META_SETMAPMODE).W(8));  // anisotropic: the window maps onto the frame
        Emit(Record(META_SETWINDOWORG).W(0).W(0));
        Emit(Record(META_SETWINDOWEXT).W(height_ * kScale).W(width_ * kScale));
        Emit(Record(META_SETBKMODE).W(1));      // transparent
        Emit(Record(META_SETTEXTALIGN).W(24));  // left, baseline: where Qt places text
        Emit(Record(META_SETPOLYFILLMODE).W(2));
        return true;
    }

    bool end() override {
        if (saved_) Emit(Record(META_RESTOREDC).W(-1));
        for (const auto &[key, slot] : cache_) Emit(Record(META_DELETEOBJECT).W(slot));
        Emit(Record(META_EOF));
        Finish();
        return true;
    }

    void updateState(const QPaintEngineState &state) override {
        const DirtyFlags f = state.state();
        if (f & DirtyTransform) transform_ = state.transform();
        if (f & DirtyPen) penQt_ = state.pen();
        if (f & DirtyBrush) brushQt_ = state.brush();
        if (f & DirtyFont) fontQt_ = state.font();
        if (f & (DirtyClipRegion | DirtyClipPath | DirtyClipEnabled)) {
            QRectF clip;
            bool on = state.isClipEnabled();
            if (f & DirtyClipRegion)
                clip = state.clipRegion().boundingRect();
            else if (f & DirtyClipPath)
                clip = state.clipPath().boundingRect();
            else
                clip = clip_;
            if (on && (f & (DirtyClipRegion | DirtyClipPath))) clip = state.transform().mapRect(clip);
            SetClip(on && !clip.isEmpty(), clip);
        }
    }

    void drawLines(const QLineF *lines, int count) override {
        if (penQt_.style() == Qt::NoPen) return;
        SelectPen();
        for (int i = 0; i < count; ++i) {
            const QPointF pts[2] = {lines[i].p1(), lines[i].p2()};
            Poly(META_POLYLINE, pts, 2);
        }
    }

    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override {
        if (count < 2) return;
        const bool line = mode == PolylineMode;
        if (line && penQt_.style() == Qt::NoPen) return;
        SelectPen();
        SelectBrush(!line);
        Poly(line ? META_POLYLINE : META_POLYGON, points, count);
    }

    void drawRects(const QRectF *rects, int count) override {
        for (int i = 0; i < count; ++i) {
            const QRectF &r = rects[i];
            if (transform_.isRotating()) {
                const QPointF pts[4] = {r.topLeft(), r.topRight(), r.bottomRight(), r.bottomLeft()};
                drawPolygon(pts, 4, OddEvenMode);
                continue;
            }
            SelectPen();
            SelectBrush(true);
            const QRectF m = transform_.mapRect(r);
            // The rectangle record leaves out its right and bottom edges when it has a pen.
            const double grow = penQt_.style() == Qt::NoPen ? 0 : 1;
            Emit(Record(META_RECTANGLE)
                     .W(Clamp16((m.bottom() + grow) * kScale))
                     .W(Clamp16((m.right() + grow) * kScale))
                     .W(Clamp16(m.top() * kScale))
                     .W(Clamp16(m.left() * kScale)));
        }
    }

    void drawPath(const QPainterPath &path) override {
        const bool fill = brushQt_.style() != Qt::NoBrush;
        for (const QPolygonF &poly : path.toSubpathPolygons()) {
            if (fill)
                drawPolygon(poly.constData(), int(poly.size()), OddEvenMode);
            else
                drawPolygon(poly.constData(), int(poly.size()), PolylineMode);
        }
    }

    void drawPoints(const QPointF *points, int count) override {
        for (int i = 0; i < count; ++i) {
            const QLineF l(points[i], points[i] + QPointF(0.5, 0));
            drawLines(&l, 1);
        }
    }

    void drawTextItem(const QPointF &p, const QTextItem &item) override {
        const QByteArray text = ToCp1252(item.text());
        if (text.isEmpty()) return;
        SelectFont(item.font());
        Emit(Record(META_SETTEXTCOLOR).D(ColorRef(penQt_.color())));
        const QPointF at = transform_.map(p);
        Emit(Record(META_EXTTEXTOUT)
                 .W(Clamp16(at.y() * kScale))
                 .W(Clamp16(at.x() * kScale))
                 .W(int(text.size()))
                 .W(0)
                 .Bytes(text));
    }

    // Pictures have no place in what the charts draw; they are left out.
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}

    Type type() const override { return User; }

    QByteArray file_;

private:
    void Emit(const Record &r) {
        r.AppendTo(body_);
        maxRecord_ = std::max(maxRecord_, r.Words());
    }

    void Poly(uint16_t function, const QPointF *points, int count) {
        Record r(function);
        r.W(count);
        for (int i = 0; i < count; ++i) {
            const QPointF q = transform_.map(points[i]);
            r.W(Clamp16(q.x() * kScale)).W(Clamp16(q.y() * kScale));
        }
        Emit(r);
    }

    // Objects are made once for each distinct pen, brush and font and kept to the end,
    // so a restored clip state never selects a deleted object.
    int Object(const QString &key, const Record &create) {
        auto it = cache_.find(key);
        if (it != cache_.end()) return it->second;
        int slot = 0;
        while (slot < int(objects_.size()) && objects_[size_t(slot)]) ++slot;
        if (slot == int(objects_.size())) objects_.push_back(true);
        objects_[size_t(slot)] = true;
        Emit(create);
        cache_[key] = slot;
        return slot;
    }

    void Select(int slot, int &current) {
        if (slot == current) return;
        Emit(Record(META_SELECTOBJECT).W(slot));
        current = slot;
    }

    void SelectPen() {
        int style = 0;
        switch (penQt_.style()) {
            case Qt::NoPen:
                style = 5;
                break;
            case Qt::DashLine:
                style = 1;
                break;
            case Qt::DotLine:
                style = 2;
                break;
            case Qt::DashDotLine:
                style = 3;
                break;
            case Qt::DashDotDotLine:
                style = 4;
                break;
            default:
                style = 0;
        }
        const double w = penQt_.isCosmetic()
                             ? penQt_.widthF()
                             : penQt_.widthF() * std::sqrt(std::abs(transform_.determinant()));
        const int width =
            style == 0 || style == 5 ? std::max(1, int(std::lround(std::max(w, 1.0) * kScale))) : 0;
        const uint32_t color = ColorRef(penQt_.color());
        const QString key = QStringLiteral("p%1,%2,%3").arg(style).arg(width).arg(color);
        Select(Object(key, Record(META_CREATEPENINDIRECT).W(style).W(width).W(0).D(color)), pen_);
    }

    void SelectBrush(bool fill) {
        const bool none = !fill || brushQt_.style() == Qt::NoBrush;
        const uint32_t color = none ? 0 : ColorRef(brushQt_.color());
        const QString key = none ? QStringLiteral("b-") : QStringLiteral("b%1").arg(color);
        Select(Object(key, Record(META_CREATEBRUSHINDIRECT).W(none ? 1 : 0).D(color).W(0)), brush_);
    }

    void SelectFont(const QFont &f) {
        const double px = f.pixelSize() > 0 ? f.pixelSize() : f.pointSizeF() * kDpi / 72.0;
        const double scale = std::sqrt(std::abs(transform_.determinant()));
        const int height = -std::max(1, int(std::lround(px * scale * kScale)));
        // Escapement counts tenths of a degree anticlockwise as seen on the page.
        const int angle = int(std::lround(-std::atan2(transform_.m12(), transform_.m11()) * 1800.0 / M_PI));
        const int weight = f.bold() ? 700 : 400;
        QByteArray face = ToCp1252(f.family()).left(31);
        face.append(QByteArray(32 - face.size(), '\0'));
        const QString key = QStringLiteral("f%1,%2,%3,%4,%5")
                                .arg(height)
                                .arg(angle)
                                .arg(weight)
                                .arg(f.italic())
                                .arg(f.family());
        Record r(META_CREATEFONTINDIRECT);
        r.W(height).W(0).W(angle).W(angle).W(weight);
        QByteArray flags;
        flags.append(char(f.italic() ? 1 : 0)).append(char(f.underline() ? 1 : 0)).append(char(0));
        flags.append(char(0)).append(char(0)).append(char(0)).append(char(0)).append(
            char(0));  // ANSI charset, defaults
        r.Bytes(flags + face);
        Select(Object(key, r), font_);
    }

    void SetClip(bool on, const QRectF &rect) {
        if (on == saved_ && (!on || rect == clip_)) return;
        if (saved_) {
            Emit(Record(META_RESTOREDC).W(-1));
            saved_ = false;
            // The restored state selects what was selected at the save.
            pen_ = savedPen_;
            brush_ = savedBrush_;
            font_ = savedFont_;
        }
        clip_ = rect;
        if (!on) return;
        Emit(Record(META_SAVEDC));
        saved_ = true;
        savedPen_ = pen_;
        savedBrush_ = brush_;
        savedFont_ = font_;
        Emit(Record(META_INTERSECTCLIPRECT)
                 .W(Clamp16(rect.bottom() * kScale))
                 .W(Clamp16(rect.right() * kScale))
                 .W(Clamp16(rect.top() * kScale))
                 .W(Clamp16(rect.left() * kScale)));
    }

    void Finish() {
        QByteArray out;
        auto put16 = [&](uint16_t v) {
            out.append(char(v & 0xFF));
            out.append(char(v >> 8));
        };
        // The placeable header: key, handle, bounds, units per inch, reserved, checksum.
        const uint16_t head[10] = {0xCDD7,
                                   0x9AC6,
                                   0,
                                   0,
                                   0,
                                   uint16_t(width_ * kScale),
                                   uint16_t(height_ * kScale),
                                   uint16_t(kDpi * kScale),
                                   0,
                                   0};
        uint16_t sum = 0;
        for (uint16_t w : head) {
            put16(w);
            sum ^= w;
        }
        put16(sum);
        const uint32_t words = uint32_t(9 + body_.size() / 2);
        put16(1);       // in memory
        put16(9);       // header words
        put16(0x0300);  // version
        put16(uint16_t(words & 0xFFFF));
        put16(uint16_t(words >> 16));
        put16(uint16_t(objects_.size()));
        put16(uint16_t(maxRecord_ & 0xFFFF));
        put16(uint16_t(maxRecord_ >> 16));
        put16(0);
        file_ = out + body_;
    }

    int width_, height_;
    QByteArray body_;
    std::vector<bool> objects_;
    std::map<QString, int> cache_;
    uint32_t maxRecord_ = 0;
    QTransform transform_;
    QPen penQt_;
    QBrush brushQt_;
    QFont fontQt_;
    QRectF clip_;
    bool saved_ = false;
    int pen_ = -1, brush_ = -1, font_ = -1, savedPen_ = -1, savedBrush_ = -1, savedFont_ = -1;
};

WmfDevice::WmfDevice(int width, int height)
    : width_(width), height_(height), engine_(std::make_unique<WmfEngine>(width, height)) {}

WmfDevice::~WmfDevice() = default;

QPaintEngine *WmfDevice::paintEngine() const {
    return engine_.get();
}

QByteArray WmfDevice::Bytes() const {
    return engine_->file_;
}

bool WmfDevice::Save(const QString &file) const {
    if (engine_->file_.isEmpty()) return false;
    SafeFile::Save(file, engine_->file_);
    return true;
}

int WmfDevice::metric(PaintDeviceMetric m) const {
    switch (m) {
        case PdmWidth:
            return width_;
        case PdmHeight:
            return height_;
        case PdmWidthMM:
            return width_ * 254 / (kDpi * 10);
        case PdmHeightMM:
            return height_ * 254 / (kDpi * 10);
        case PdmNumColors:
            return 0x7FFFFFFF;
        case PdmDepth:
            return 24;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return kDpi;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(QPaintDevice::devicePixelRatioFScale());
        default:
            return 0;
    }
}
}  // namespace fm
