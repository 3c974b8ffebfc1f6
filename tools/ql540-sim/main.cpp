// ql540-sim: a QL540 logger on a pseudo-terminal, for tests and for trying Fluxmere
// without the instrument.
#include "device.h"
#include "pty_line.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {
using simpty::g_stop;
std::string g_link;
FILE *g_log = nullptr;

void Usage() {
    std::fputs("Usage: ql540-sim [--link PATH] [--memory 4096|8192|32768|65536] [--samples N] [--fast]\n"
               "                 [--fault KIND [--fault-command N] [--once]] [--control FIFO]\n"
               "                 [--clock YYYY-MM-DDTHH:MM[:SS]] [--battery-low] [--log FILE]\n"
               "                 [--speed FACTOR] [--dump-memory FILE] [--dump-samples FILE]\n"
               "Faults: no-answer refuse bad-crc stray-byte truncate late wrong-command short\n"
               "        silent-upload bad-signature no-samples blank-start\n",
               stderr);
}

void Hex(const char *what, const std::vector<uint8_t> &bytes) {
    if (!g_log) return;
    std::fprintf(g_log, "%s %zu:", what, bytes.size());
    for (size_t i = 0; i < bytes.size() && i < 64; ++i) std::fprintf(g_log, " %02X", bytes[i]);
    std::fprintf(g_log, bytes.size() > 64 ? " ...\n" : "\n");
    std::fflush(g_log);
}

// "2026-03-03T09:30" or with seconds; false when the text is no such date.
bool ParseClock(const std::string &text, std::tm &out) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
    const int n = std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &y, &mo, &d, &h, &mi, &s);
    if (n < 5 || mo < 1 || mo > 12 || d < 1 || d > 31 || h > 23 || mi > 59 || s > 59) return false;
    out = std::tm{};
    out.tm_year = y - 1900;
    out.tm_mon = mo - 1;
    out.tm_mday = d;
    out.tm_hour = h;
    out.tm_min = mi;
    out.tm_sec = s;
    return true;
}

bool Applies(const sim::Faults &f, int command) {
    return f.kind != "none" && (f.command < 0 || f.command == command);
}

void Control(const std::string &line, sim::Faults &faults, sim::Device &dev) {
    std::istringstream in(line);
    std::string word;
    in >> word;
    if (word == "fault") {
        faults = sim::Faults{};
        in >> faults.kind;
        int cmd;
        if (in >> cmd) faults.command = cmd;
        std::string once;
        if (in >> once) faults.once = once == "once";
        dev.badSignature = faults.kind == "bad-signature";
        dev.noSamples = faults.kind == "no-samples";
        dev.blankStart = faults.kind == "blank-start";
        dev.Generate(int(dev.Samples().size()));
    } else if (word == "samples") {
        int n = 0;
        in >> n;
        dev.Generate(n);
    } else if (word == "memory") {
        int m = 65536;
        in >> m;
        dev.SetMemory(m);
    } else if (word == "battery-low") {
        dev.batteryLow = true;
    } else if (word == "quit") {
        g_stop = 1;
    }
}
} // namespace

int main(int argc, char **argv) {
    int memory = 65536, samples = -1;
    bool fast = false;
    sim::Faults faults;
    std::string control, dumpMemory, dumpSamples;
    bool batteryLow = false;
    double speed = 1.0;
    // The logger's clock starts at the present date unless a test fixes it.
    const std::time_t now = std::time(nullptr);
    std::tm clock = *std::localtime(&now);
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        auto next = [&]() -> std::string {
            if (i + 1 >= argc) {
                Usage();
                std::exit(64);
            }
            return argv[++i];
        };
        if (a == "--link") g_link = next();
        else if (a == "--memory") memory = std::atoi(next().c_str());
        else if (a == "--samples") samples = std::atoi(next().c_str());
        else if (a == "--fast") fast = true;
        else if (a == "--fault") faults.kind = next();
        else if (a == "--fault-command") faults.command = std::atoi(next().c_str());
        else if (a == "--once") faults.once = true;
        else if (a == "--control") control = next();
        else if (a == "--battery-low") batteryLow = true;
        else if (a == "--speed") speed = std::atof(next().c_str());
        else if (a == "--clock") {
            if (!ParseClock(next(), clock)) {
                Usage();
                return 64;
            }
        }
        else if (a == "--log") g_log = std::fopen(next().c_str(), "w");
        else if (a == "--dump-memory") dumpMemory = next();
        else if (a == "--dump-samples") dumpSamples = next();
        else {
            Usage();
            return a == "--help" ? 0 : 64;
        }
    }
    if (memory != 4096 && memory != 8192 && memory != 32768 && memory != 65536) {
        Usage();
        return 64;
    }
    sim::Device dev(memory, samples, clock);
    dev.speed = speed > 0 ? speed : 1.0;
    dev.batteryLow = batteryLow;
    Control("fault " + faults.kind + " " + std::to_string(faults.command) + (faults.once ? " once" : ""), faults, dev);
    if (samples >= 0) dev.Generate(samples);

    if (!dumpMemory.empty()) {
        FILE *f = std::fopen(dumpMemory.c_str(), "wb");
        const auto m = dev.MemoryImage();
        std::fwrite(m.data(), 1, m.size(), f);
        std::fclose(f);
    }
    if (!dumpSamples.empty()) {
        FILE *f = std::fopen(dumpSamples.c_str(), "w");
        for (const sim::Sample &s : dev.Samples()) {
            long long v[3] = {sim::Hundredths(s.x, s.flags & 1), sim::Hundredths(s.y, s.flags & 2),
                              sim::Hundredths(s.z, s.flags & 4)};
            std::fprintf(f, "%lld.%02lld %lld.%02lld %lld.%02lld\n", v[0] / 100, v[0] % 100, v[1] / 100, v[1] % 100,
                         v[2] / 100, v[2] % 100);
        }
        std::fclose(f);
    }

    simpty::InstallSignals();
    simpty::Line line;
    if (!simpty::Open(line, g_link, "ql540-sim")) return 1;
    const int master = line.master;

    int ctl = -1;
    if (!control.empty()) {
        unlink(control.c_str());
        mkfifo(control.c_str(), 0600);
        ctl = open(control.c_str(), O_RDWR | O_NONBLOCK);
    }
    std::vector<uint8_t> rx;
    std::string ctlLine;
    while (!g_stop) {
        pollfd fds[2] = {{master, POLLIN, 0}, {ctl, POLLIN, 0}};
        if (poll(fds, ctl >= 0 ? 2 : 1, 100) <= 0) continue;
        if (ctl >= 0 && (fds[1].revents & POLLIN)) {
            char buf[256];
            const ssize_t n = read(ctl, buf, sizeof buf);
            for (ssize_t i = 0; i < n; ++i) {
                if (buf[i] == '\n') {
                    Control(ctlLine, faults, dev);
                    ctlLine.clear();
                } else {
                    ctlLine += buf[i];
                }
            }
        }
        if (!(fds[0].revents & POLLIN)) {
            if (fds[0].revents & POLLHUP) std::this_thread::sleep_for(std::chrono::milliseconds(20));
            continue;
        }
        uint8_t buf[512];
        const ssize_t n = read(master, buf, sizeof buf);
        if (n <= 0) continue;
        rx.insert(rx.end(), buf, buf + n);
        // Frames: '>' 0 len cmd payload crc crc. Anything before a '>' is noise.
        while (!rx.empty()) {
            if (rx[0] != 0x3E) {
                rx.erase(rx.begin());
                continue;
            }
            if (rx.size() < 3) break;
            const size_t total = size_t(rx[1]) * 256 + rx[2] + 3;
            if (rx.size() < total) break;
            std::vector<uint8_t> frame(rx.begin(), rx.begin() + long(total));
            rx.erase(rx.begin(), rx.begin() + long(total));
            Hex("in ", frame);
            const uint16_t crc = sim::Crc(frame.data(), total - 2);
            if (total < 6 || frame[total - 2] != (crc >> 8) || frame[total - 1] != (crc & 0xFF)) continue;
            const uint8_t cmd = frame[3];
            std::vector<uint8_t> payload(frame.begin() + 4, frame.end() - 2);
            std::vector<uint8_t> reply = dev.Handle(cmd, payload);
            const bool fault = Applies(faults, cmd);
            size_t stopAfter = SIZE_MAX;
            if (fault) {
                const std::string &k = faults.kind;
                if (k == "no-answer") reply.clear();
                else if (k == "refuse" || k == "short") {
                    // A valid frame with one payload byte: a refusal, or the command's own code.
                    reply = {0x3C, 0, 4, k == "refuse" ? uint8_t(0xFF) : cmd, 0};
                    const uint16_t c = sim::Crc(reply.data(), reply.size());
                    reply.push_back(uint8_t(c >> 8));
                    reply.push_back(uint8_t(c & 0xFF));
                } else if (k == "bad-crc") reply.back() ^= 0x5A;
                else if (k == "stray-byte") reply.insert(reply.begin(), 0x00);
                else if (k == "truncate") reply.resize(reply.size() > 3 ? reply.size() - 3 : 0);
                else if (k == "late") std::this_thread::sleep_for(std::chrono::milliseconds(3500));
                else if (k == "wrong-command") reply = dev.Handle(cmd == 3 ? 14 : 3, {});
                else if (k == "silent-upload" && cmd == 4) stopAfter = reply.size() / 2;
                if (faults.once) Control("fault none", faults, dev);
            }
            Hex("out", reply);
            simpty::Send(master, reply, fast, stopAfter);
        }
    }
    if (!control.empty()) unlink(control.c_str());
    simpty::Close(line);
    return 0;
}
