#include "link/timers.h"

#include <QTimer>
#include <map>
#include <memory>

namespace fm {
namespace {
std::map<int, std::unique_ptr<QTimer>> &Timers() {
    static std::map<int, std::unique_ptr<QTimer>> timers;
    return timers;
}
int g_nextId = 0;
} // namespace

int SetTimer(int periodMs, std::function<void()> callback) {
    auto timer = std::make_unique<QTimer>();
    timer->setInterval(periodMs);
    // A live poll's time-out (2.9 s) ends only 0.1 s before the next poll (3 s): Qt's
    // default coarse timers may move either by 5 % and let the two collide.
    timer->setTimerType(Qt::PreciseTimer);
    const int id = ++g_nextId;
    QObject::connect(timer.get(), &QTimer::timeout, [callback = std::move(callback)] { callback(); });
    timer->start();
    Timers()[id] = std::move(timer);
    return id;
}

void KillTimer(int id) {
    auto &timers = Timers();
    const auto it = timers.find(id);
    if (it == timers.end()) return;
    it->second->stop();
    // The callback may be the one running now: let the timer go once control returns.
    it->second.release()->deleteLater();
    timers.erase(it);
}

bool TimerRunning(int id) { return Timers().count(id) > 0; }
} // namespace fm
