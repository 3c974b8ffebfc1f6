#include "core/widgets/icons.h"

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
QPixmap Render(const QString &path, QSize size) {
    InitIconResources();
    QSvgRenderer svg(path);
    QPixmap pm(size);
    pm.fill(Qt::transparent);
    if (svg.isValid()) {
        QPainter p(&pm);
        svg.render(&p);
    }
    return pm;
}
} // namespace

QIcon ToolbarImage(int index) {
    InitIconResources();
    return QIcon(QStringLiteral(":/icons/toolbar/%1.svg").arg(index));
}

QPixmap StatusImage(int index, int px) {
    return Render(QStringLiteral(":/icons/status/%1.svg").arg(index), QSize(px, px));
}

QPixmap MessageImage(int icon, int px) {
    static const char *names[] = {"error", "warning", "info"};
    return Render(QStringLiteral(":/icons/message/%1.svg").arg(QLatin1String(names[qBound(0, icon, 2)])),
                  QSize(px, px));
}

QPixmap InfoImage(const char *name, int px) {
    return Render(QStringLiteral(":/icons/info/%1.svg").arg(QLatin1String(name)), QSize(px, px));
}

QPixmap MarkImage(int px) { return Render(QStringLiteral(":/icons/mark.svg"), QSize(px, px)); }
} // namespace fm
