#include "console_host.h"

#include "core/language.h"
#include "core/regional.h"

#include <QCoreApplication>
#include <cstdio>
#include <unistd.h>

namespace fm::cli {

bool ConsoleHost::MessBox(const QString &text, const QString &title, int icon, int mode) {
    if (icon == -1) icon = 0;
    if (mode == -1) mode = 1;
    const QString heading = title.isEmpty() ? ResString(2 + qBound(0, icon, 2)) : title;
    QString body = text;
    body.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    std::fprintf(stderr, "%s: %s\n", qPrintable(heading), qPrintable(body));
    // A plain notice counts as read, and "connect the logger, then OK" as done: the
    // user asked for the link. A yes/no question is answered by --yes.
    return mode == 0 ? yes_ : true;
}

bool ConsoleHost::SystemBox(const QString &text, const QString &title, SystemBoxKind kind) {
    QString body = text.trimmed();
    body.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    std::fprintf(stderr, "%s: %s\n", qPrintable(title), qPrintable(body));
    return kind == SystemBoxKind::CriticalYesNo && yes_;
}

// Without a window there is nobody to ask: the logger's missing start date stays blank.
double ConsoleHost::AskDate() {
    return DateFromParts(2001, 1, 1);
}

void ConsoleHost::DoEvents() {
    QCoreApplication::processEvents();
}

// On a terminal the share of an upload is one line that rewrites itself; in a pipe or a
// file it would only be noise.
void ConsoleHost::WaitShare(int received, int total) {
    const int percent = SharePercent(received, total);
    if (percent < 0 || percent == shownShare_ || !isatty(fileno(stderr))) return;
    shownShare_ = percent;
    std::fprintf(stderr, "\r%s%s %%", qPrintable(ResString(3052)),
                 qPrintable(FormatNumber(double(percent), u"0")));
    std::fflush(stderr);
}

void ConsoleHost::SetCommStatus(int image, const QString &text) {
    constexpr int kFailed = 4;
    if (image != kFailed) return;
    WaitHide();  // off the share's line
    std::fprintf(stderr, "%s: %s\n", qPrintable(ResString(2)), qPrintable(text));
}

void ConsoleHost::WaitHide() {
    if (shownShare_ >= 0) std::fputc('\n', stderr);
    shownShare_ = -1;
}

}  // namespace fm::cli
