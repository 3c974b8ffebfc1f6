#include "shell/widgets/frm_help.h"

#include <QDialog>
#include <QFileInfo>
#include <QPointer>
#include <QResource>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace fm {
namespace {
QString g_registered;
QPointer<QDialog> g_window;
QTextBrowser *g_browser = nullptr;
} // namespace

bool WinHelp(QWidget *parent, const QString &helpFile, int command) {
    if (g_registered != helpFile) {
        if (!g_registered.isEmpty()) QResource::unregisterResource(g_registered, QStringLiteral("/guide"));
        g_registered.clear();
        if (!QResource::registerResource(helpFile, QStringLiteral("/guide"))) return false;
        g_registered = helpFile;
    }
    const QString lang = QFileInfo(helpFile).completeBaseName().endsWith(QLatin1String("_it"))
                             ? QStringLiteral("it") : QStringLiteral("en");
    const QString root = QStringLiteral("qrc:/guide/fluxmere/help/%1/").arg(lang);
    if (!g_window) {
        g_window = new QDialog(parent, Qt::Window);
        g_window->setObjectName(QStringLiteral("frmHelp"));
        g_window->setAttribute(Qt::WA_DeleteOnClose);
        g_browser = new QTextBrowser(g_window);
        g_browser->setOpenExternalLinks(false);
        auto *lay = new QVBoxLayout(g_window);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->addWidget(g_browser);
        g_window->resize(760, 560);
        QObject::connect(g_browser, &QTextBrowser::sourceChanged, g_window,
                         [] { g_window->setWindowTitle(g_browser->documentTitle()); });
    }
    g_browser->setSource(QUrl(root + (command == HELP_INDEX ? QStringLiteral("index.html")
                                                          : QStringLiteral("contents.html"))));
    g_window->show();
    g_window->raise();
    return true;
}
} // namespace fm
