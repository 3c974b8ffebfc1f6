#pragma once
// The pseudo-terminal the simulators put their device on: raw, 19200 baud, with an
// optional "comN" link to it, and writes paced at the line rate. Plain POSIX; shares
// nothing with the application's own serial code.
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace simpty {

// Set by SIGINT and SIGTERM (after InstallSignals) or by the simulator itself.
extern volatile std::sig_atomic_t g_stop;
void InstallSignals();

struct Line {
    int master = -1;
    int slave = -1;  // kept open so the line stays up while the application reopens it
    std::string device, link;
};

// Opens the line, links `link` to its device when given and prints the device as the
// first line of standard output. False, with the reason on standard error, on failure.
bool Open(Line &line, const std::string &link, const char *program);
// Removes the link and closes both sides.
void Close(Line &line);

// Bytes per second at 19200 baud, 8N1.
inline constexpr int kLineRate = 1920;
// Writes `bytes` at the line rate, or at once when `fast`; stops after `stopAfter`
// bytes or when g_stop is set.
void Send(int fd, const std::vector<uint8_t> &bytes, bool fast, size_t stopAfter = SIZE_MAX);

}  // namespace simpty
