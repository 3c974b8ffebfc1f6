#include "printing/widgets/printer_page.h"

#include <qcustomplot.h>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPagedPaintDevice>

namespace fm {
PrinterPage::PrinterPage(QPagedPaintDevice *device)
    : device_(device), painter_(std::make_unique<QCPPainter>()), font_(QGuiApplication::font()) {
    font_.setPointSizeF(10);
}

PrinterPage::~PrinterPage() {
    if (painter_->isActive()) painter_->end();
}

bool PrinterPage::Begin() {
    return painter_->begin(device_);
}

int64_t PrinterPage::PagesFor(QPagedPaintDevice *device, const QFont &font, int64_t lines) {
    const double height = QFontMetricsF(font, device).height();
    const int64_t perPage = std::max<int64_t>(1, int64_t(device->height() / height));
    return lines <= 0 ? 0 : (lines + perPage - 1) / perPage;
}

bool PrinterPage::Landscape() const {
    return device_->pageLayout().orientation() == QPageLayout::Landscape;
}

double PrinterPage::Dpi() const {
    return device_->logicalDpiX();
}

double PrinterPage::ScaleWidth() const {
    return device_->width() * 1440.0 / Dpi();
}

double PrinterPage::ScaleHeight() const {
    return device_->height() * 1440.0 / device_->logicalDpiY();
}

QRectF PrinterPage::DeviceRect(const QRect &px) const {
    const double f = Dpi() / kPixelsPerInch;
    return QRectF(QPointF(px.left() * f, px.top() * f), QPointF(px.right() * f, px.bottom() * f));
}

double PrinterPage::SetFontSize(double points) {
    font_.setPointSizeF(std::max(1.0, points));
    return font_.pointSizeF();
}

double PrinterPage::TextWidth(const QString &text) const {
    return QFontMetricsF(font_, device_).horizontalAdvance(text) * 1440 / Dpi();
}

double PrinterPage::TextHeight() const {
    return QFontMetricsF(font_, device_).height() * 1440 / device_->logicalDpiY();
}

void PrinterPage::Print(const QString &text, const QColor &color) {
    QCPPainter &p = *painter_;
    p.setFont(font_);
    p.setPen(color);
    const QFontMetricsF m(font_, device_);
    p.drawText(QPointF(ToDevice(CurrentX), CurrentY * device_->logicalDpiY() / 1440 + m.ascent()), text);
    CurrentY += TextHeight();
    CurrentX = 0;
}

bool PrinterPage::NewPage() {
    CurrentX = CurrentY = 0;
    return device_->newPage();
}

bool PrinterPage::EndDoc() {
    return painter_->end();
}

QCPPainter &PrinterPage::Painter() {
    return *painter_;
}
}  // namespace fm
