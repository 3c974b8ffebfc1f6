// surveyor-sim: a Surveyor unit on a pseudo-terminal, for tests and for trying the
// import of Fluxmere without the unit.
#include "pty_line.h"
#include "unit.h"

#include <poll.h>
#include <unistd.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

namespace {
using simpty::g_stop;

const char kUsage[] =
    "Usage: surveyor-sim [--link PATH] [--blocks N] [--records N] [--step MINUTES]\n"
    "                    [--start YYYY-MM-DDTHH:MM[:SS]] [--gap MINUTES]\n"
    "                    [--overlap-block K [--overlap MINUTES]] [--month-first] [--fast]\n"
    "                    [--fault KIND [--fault-block K]] [--log FILE] [--dump-samples FILE]\n"
    "Faults: no-answer short-count cut-block long-block bad-date too-many-records zero-blocks\n";

int Usage(int code) {
    std::fputs(kUsage, stderr);
    return code;
}

bool ParseStart(const std::string &text, std::time_t &out) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
    const int n = std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &y, &mo, &d, &h, &mi, &s);
    if (n < 5 || mo < 1 || mo > 12 || d < 1 || d > 31 || h > 23 || mi > 59 || s > 59) return false;
    std::tm tm{};
    tm.tm_year = y - 1900;
    tm.tm_mon = mo - 1;
    tm.tm_mday = d;
    tm.tm_hour = h;
    tm.tm_min = mi;
    tm.tm_sec = s;
    out = timegm(&tm);
    return true;
}

bool Known(const std::string &fault) {
    for (const char *k : {"none", "no-answer", "short-count", "cut-block", "long-block", "bad-date",
                          "too-many-records", "zero-blocks"})
        if (fault == k) return true;
    return false;
}

// The reply to "E": six digits, so that the application's wait ends at once; a short
// reply makes it sit out its two seconds.
std::vector<uint8_t> CountReply(const surveyor::Plan &p) {
    char text[32];
    const int blocks = p.fault == "zero-blocks" ? 0 : p.blocks;
    if (p.fault == "short-count")
        std::snprintf(text, sizeof text, "%d\r", blocks);
    else
        std::snprintf(text, sizeof text, "%06d", blocks);
    return {text, text + std::string(text).size()};
}
}  // namespace

int main(int argc, char **argv) {
    surveyor::Plan plan;
    ParseStart("2026-03-02T08:00:00", plan.start);
    std::string link, dumpSamples;
    bool fast = false;
    FILE *log = nullptr;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        const auto next = [&]() -> std::string {
            if (i + 1 >= argc) std::exit(Usage(64));
            return argv[++i];
        };
        const auto number = [&] { return std::atoi(next().c_str()); };
        if (a == "--link")
            link = next();
        else if (a == "--blocks")
            plan.blocks = number();
        else if (a == "--records")
            plan.records = number();
        else if (a == "--step")
            plan.step = number();
        else if (a == "--start") {
            if (!ParseStart(next(), plan.start)) return Usage(64);
        } else if (a == "--gap")
            plan.gap = number();
        else if (a == "--overlap-block")
            plan.overlapBlock = number();
        else if (a == "--overlap")
            plan.overlap = number();
        else if (a == "--month-first")
            plan.monthFirst = true;
        else if (a == "--fast")
            fast = true;
        else if (a == "--fault")
            plan.fault = next();
        else if (a == "--fault-block")
            plan.faultBlock = number();
        else if (a == "--log")
            log = std::fopen(next().c_str(), "w");
        else if (a == "--dump-samples")
            dumpSamples = next();
        else
            return Usage(a == "--help" ? 0 : 64);
    }
    if (plan.blocks < 0 || plan.blocks > 999999 || plan.records < 0 || plan.records > surveyor::kMaxRecords ||
        plan.step < 1 || plan.step > 65535 || !Known(plan.fault))
        return Usage(64);
    if (plan.faultBlock >= plan.blocks) plan.faultBlock = plan.blocks - 1;
    const surveyor::Unit unit(plan);
    if (!dumpSamples.empty() && !surveyor::DumpSamples(unit, dumpSamples)) {
        std::perror("surveyor-sim: dump");
        return 1;
    }

    simpty::InstallSignals();
    simpty::Line line;
    if (!simpty::Open(line, link, "surveyor-sim")) return 1;
    size_t next = 0;  // the block the next "H" gets
    while (!g_stop) {
        pollfd fd{line.master, POLLIN, 0};
        if (poll(&fd, 1, 100) <= 0) continue;
        if (!(fd.revents & POLLIN)) {
            if (fd.revents & POLLHUP) std::this_thread::sleep_for(std::chrono::milliseconds(20));
            continue;
        }
        uint8_t buf[64];
        const ssize_t n = read(line.master, buf, sizeof buf);
        for (ssize_t k = 0; k < n && !g_stop; ++k) {
            if (log) {
                std::fprintf(log, "%c\n", buf[k] >= 32 && buf[k] < 127 ? char(buf[k]) : '?');
                std::fflush(log);
            }
            if (buf[k] == 'E') {
                // A new import starts from the first block.
                next = 0;
                if (plan.fault != "no-answer") simpty::Send(line.master, CountReply(plan), fast);
            } else if (buf[k] == 'H' && next < unit.blocks.size() && plan.fault != "zero-blocks") {
                std::vector<uint8_t> block = unit.blocks[next];
                size_t stopAfter = SIZE_MAX;
                if (int(next) == plan.faultBlock) {
                    if (plan.fault == "cut-block") stopAfter = block.size() / 2;
                    if (plan.fault == "long-block") block.resize(block.size() + 100, 0x55);
                }
                ++next;
                simpty::Send(line.master, block, fast, stopAfter);
            }
        }
    }
    if (log) std::fclose(log);
    simpty::Close(line);
    return 0;
}
