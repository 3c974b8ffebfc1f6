#include "pty_line.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace simpty {

volatile std::sig_atomic_t g_stop = 0;

namespace {
void OnSignal(int) {
    g_stop = 1;
}
}  // namespace

void InstallSignals() {
    std::signal(SIGINT, OnSignal);
    std::signal(SIGTERM, OnSignal);
}

bool Open(Line &line, const std::string &link, const char *program) {
    line.master = posix_openpt(O_RDWR | O_NOCTTY);
    if (line.master < 0 || grantpt(line.master) != 0 || unlockpt(line.master) != 0) {
        std::fprintf(stderr, "%s: pseudo-terminal: %s\n", program, std::strerror(errno));
        return false;
    }
    line.device = ptsname(line.master);
    line.slave = open(line.device.c_str(), O_RDWR | O_NOCTTY);
    termios tio{};
    tcgetattr(line.slave, &tio);
    cfmakeraw(&tio);
    cfsetspeed(&tio, B19200);
    tcsetattr(line.slave, TCSANOW, &tio);
    fcntl(line.master, F_SETFL, fcntl(line.master, F_GETFL) | O_NONBLOCK);
    line.link = link;
    if (!link.empty()) {
        unlink(link.c_str());
        if (symlink(line.device.c_str(), link.c_str()) != 0)
            std::fprintf(stderr, "%s: link: %s\n", program, std::strerror(errno));
    }
    std::printf("%s\n", line.device.c_str());
    std::fflush(stdout);
    return true;
}

void Close(Line &line) {
    if (!line.link.empty()) unlink(line.link.c_str());
    if (line.slave >= 0) close(line.slave);
    if (line.master >= 0) close(line.master);
    line = Line{};
}

void Send(int fd, const std::vector<uint8_t> &bytes, bool fast, size_t stopAfter) {
    const size_t total = std::min(bytes.size(), stopAfter);
    const size_t chunk = fast ? total : 96;  // 50 ms of line time
    const auto start = std::chrono::steady_clock::now();
    for (size_t sent = 0; sent < total && !g_stop;) {
        const size_t n = std::min(chunk, total - sent);
        const ssize_t w = write(fd, bytes.data() + sent, n);
        if (w < 0) {
            if (errno == EAGAIN || errno == EINTR || errno == EIO) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
                continue;
            }
            return;
        }
        sent += size_t(w);
        if (!fast)
            std::this_thread::sleep_until(start + std::chrono::microseconds(sent * 1000000 / kLineRate));
    }
}

}  // namespace simpty
