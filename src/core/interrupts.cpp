#include "core/interrupts.h"

#include <QSocketNotifier>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace fm {
namespace {
int g_pipe[2] = {-1, -1};
volatile std::sig_atomic_t g_signal = 0;
std::function<void(int)> g_handler;

void OnSignal(int sig) {
    g_signal = sig;
    std::signal(sig, SIG_DFL);
    const char byte = char(sig);
    [[maybe_unused]] const ssize_t n = ::write(g_pipe[1], &byte, 1);  // async-signal-safe
}
} // namespace

void WatchInterrupts(std::function<void(int)> handler) {
    g_handler = std::move(handler);
    if (g_pipe[0] < 0) {
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_pipe) != 0) return;
        auto *notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read);
        QObject::connect(notifier, &QSocketNotifier::activated, [] {
            char byte = 0;
            if (::read(g_pipe[0], &byte, 1) == 1 && g_handler) g_handler(int(byte));
        });
    }
    struct sigaction sa {};
    sa.sa_handler = OnSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    for (int sig : {SIGINT, SIGTERM, SIGHUP}) sigaction(sig, &sa, nullptr);
}

int InterruptSignal() { return int(g_signal); }
} // namespace fm
