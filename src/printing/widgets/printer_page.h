#pragma once
// One page device as the printing code speaks to it: positions in twips from the
// printable area's corner, font size in points, "printer pixels" of 1/600 inch for the
// chart's rectangle. The same calls draw on a printer, a PDF writer and the preview at
// whatever resolution the device has, so the three give the same page.
#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>
#include <memory>

class QCPPainter;
class QPagedPaintDevice;

namespace fm {
class PrinterPage {
public:
    // A printer pixel, whatever the device's own resolution.
    static constexpr double kPixelsPerInch = 600;
    explicit PrinterPage(QPagedPaintDevice *device);
    ~PrinterPage();
    // Starts painting; false when the device refused (no printer, a file it cannot make).
    bool Begin();
    // The pages `lines` lines of `font` take on the device, as the list is laid out.
    static int64_t PagesFor(QPagedPaintDevice *device, const QFont &font, int64_t lines);
    bool Landscape() const;
    // The printable area, in twips.
    double ScaleWidth() const;
    double ScaleHeight() const;
    // The printable area, in printer pixels.
    double PixelWidth() const { return ScaleWidth() * kPixelsPerInch / 1440; }
    double PixelHeight() const { return ScaleHeight() * kPixelsPerInch / 1440; }
    QRectF DeviceRect(const QRect &printerPixels) const;

    double FontSize() const { return font_.pointSizeF(); }
    // The size the device took.
    double SetFontSize(double points);
    void SetFontBold(bool bold) { font_.setBold(bold); }
    void SetFontFamily(const QString &family) { font_.setFamily(family); }
    QFont Font() const { return font_; }
    void SetFont(const QFont &font) { font_ = font; }
    double CurrentX = 0, CurrentY = 0;
    double TextWidth(const QString &text) const;
    double TextHeight() const;
    // Draws text with its top at CurrentY; the next line starts at the left edge below.
    void Print(const QString &text, const QColor &color = Qt::black);
    bool NewPage();
    // Ends the document; false when the device reported a failure.
    bool EndDoc();
    QCPPainter &Painter();

private:
    double Dpi() const;
    double ToDevice(double twips) const { return twips * Dpi() / 1440; }
    QPagedPaintDevice *device_;
    std::unique_ptr<QCPPainter> painter_;
    QFont font_;
};
}  // namespace fm
