#include "support/recorder_host.h"

namespace fm::test {

RecorderHost::RecorderHost() { SetHost(this); }
RecorderHost::~RecorderHost() { SetHost(nullptr); }

bool RecorderHost::Answer() {
    if (answers.empty()) return defaultAnswer;
    const bool a = answers.front();
    answers.pop_front();
    return a;
}

bool RecorderHost::MessBox(const QString &text, const QString &title, int icon, int mode) {
    boxes.push_back({text, title, icon, mode, false});
    return Answer();
}

bool RecorderHost::SystemBox(const QString &text, const QString &title, SystemBoxKind kind) {
    boxes.push_back({text, title, 0, int(kind), true});
    return kind == SystemBoxKind::CriticalYesNo ? Answer() : false;
}

bool RecorderHost::ButtonEnabled(int button) const {
    const auto it = enabled.find(button);
    if (it != enabled.end()) return it->second;
    return button != 3 && button != 4 && button != 13 && button != 14 && button != 15;
}

} // namespace fm::test
