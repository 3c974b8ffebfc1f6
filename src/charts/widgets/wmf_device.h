#pragma once
// A paint device that records what is painted on it as a placeable Windows metafile:
// lines, polylines, polygons, rectangles, text and colours, the records that Windows
// and office programs read back. Qt writes no metafiles of its own.
#include <QByteArray>
#include <QPaintDevice>
#include <QString>
#include <memory>

namespace fm {
class WmfEngine;

class WmfDevice : public QPaintDevice {
public:
    // width x height pixels at 96 per inch.
    WmfDevice(int width, int height);
    ~WmfDevice() override;

    QPaintEngine *paintEngine() const override;
    // The whole file once the painter has ended; empty before.
    QByteArray Bytes() const;
    // Writes the file through the safe writer; false when nothing was drawn. Raises a
    // fault that names the cause when the file cannot be written.
    bool Save(const QString &file) const;

protected:
    int metric(PaintDeviceMetric m) const override;

private:
    int width_, height_;
    std::unique_ptr<WmfEngine> engine_;
};
}  // namespace fm
