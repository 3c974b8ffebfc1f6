#include "core/host.h"

#include "core/options.h"
#include "core/regional.h"

#include <cstdio>

namespace fm {
namespace {
UiHost *g_host = nullptr;

// The starting states of the toolbar: 3, 4, 13, 14, 15, 25 and the gaps are off.
unsigned StartingButtons() {
    unsigned bits = 0;
    for (int b : {2, 6, 7, 9, 10, 11, 17, 19, 20, 21, 23, 24}) bits |= 1u << b;
    return bits;
}
} // namespace

bool QuietHost::MessBox(const QString &text, const QString &title, int, int) {
    std::fprintf(stderr, "%s%s%s\n", qPrintable(title), title.isEmpty() ? "" : ": ",
                 qPrintable(text));
    return false;
}

bool QuietHost::SystemBox(const QString &text, const QString &title, SystemBoxKind) {
    return MessBox(text, title, 0, 1);
}

void QuietHost::SetButtonEnabled(int button, bool enabled) {
    if (button < 1 || button > 25) return;
    if (buttonsEnabled_ == 0) buttonsEnabled_ = StartingButtons();
    if (enabled) buttonsEnabled_ |= 1u << button;
    else buttonsEnabled_ &= ~(1u << button);
}

bool QuietHost::ButtonEnabled(int button) const {
    if (button < 1 || button > 25) return false;
    const unsigned bits = buttonsEnabled_ ? buttonsEnabled_ : StartingButtons();
    return bits & (1u << button);
}

double QuietHost::AskDate() { return DateFromParts(2001, 1, 1, 0, 0, 0); }

UiHost &Host() {
    static QuietHost quiet;
    return g_host ? *g_host : quiet;
}

void SetHost(UiHost *host) { g_host = host; }

void EnableDataButtons() {
    for (int b : {3, 4, 15, 14, 13, 25}) Host().SetButtonEnabled(b, true);
}

void ShowWarningsIfWanted() {
    if (!Options().ShowWarnings) return;
    Host().ShowWarnings();
    Host().SetButtonValue(19, 1);
}
} // namespace fm
