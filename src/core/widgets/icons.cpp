#include "core/widgets/icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

// The pictures live in the static library: register them on first use.
static void InitIconResources() {
    static const bool done = [] {
        Q_INIT_RESOURCE(icons);
        return true;
    }();
    Q_UNUSED(done);
}

namespace fm {
namespace {
// Drawn at the screen's pixel ratio, so a picture stays sharp on a HiDPI screen while
// it keeps its size in the layout.
QPixmap Render(const QString &path, QSize size) {
    InitIconResources();
    QSvgRenderer svg(path);
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    QPixmap pm(size * ratio);
    pm.setDevicePixelRatio(ratio);
    pm.fill(Qt::transparent);
    if (svg.isValid()) {
        QPainter p(&pm);
        svg.render(&p, QRectF(QPointF(0, 0), QSizeF(size)));  // in the painter's logical units
    }
    return pm;
}
QString MessagePath(int icon) {
    static const char *names[] = {"error", "warning", "info"};
    return QStringLiteral(":/icons/message/%1.svg").arg(QLatin1String(names[qBound(0, icon, 2)]));
}
} // namespace

QIcon ToolbarImage(int index) {
    InitIconResources();
    return QIcon(QStringLiteral(":/icons/toolbar/%1.svg").arg(index));
}

QPixmap StatusImage(int index, int px) {
    return Render(QStringLiteral(":/icons/status/%1.svg").arg(index), QSize(px, px));
}

QIcon MessageIcon(int icon) {
    InitIconResources();
    return QIcon(MessagePath(icon));
}

QPixmap MessageImage(int icon, int px) {
    return Render(MessagePath(icon), QSize(px, px));
}

QPixmap InfoImage(const char *name, int px) {
    return Render(QStringLiteral(":/icons/info/%1.svg").arg(QLatin1String(name)), QSize(px, px));
}

QPixmap MarkImage(int px) { return Render(QStringLiteral(":/icons/mark.svg"), QSize(px, px)); }
} // namespace fm
