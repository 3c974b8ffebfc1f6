#pragma once
// Answers the next modal window from a timer, as a user would: the test says what
// to do with it once it is up.
#include <QApplication>
#include <QDir>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

namespace fm::test {
// The next modal window of kind T on the screen (a file dialog stays modal under its own
// question, so the first modal window is not always the one).
template <class T>
void WhenUp(std::function<void(T *)> act, int tries = 300) {
    auto left = std::make_shared<int>(tries);
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [act, left, poll] {
        if (auto *w = qobject_cast<T *>(QApplication::activeModalWidget()); w && w->isVisible()) {
            act(w);
            return;
        }
        if (--*left > 0) QTimer::singleShot(10, *poll);
    };
    QTimer::singleShot(0, *poll);
}

inline void WhenModal(std::function<void(QWidget *)> act, int tries = 200) {
    WhenUp<QWidget>(std::move(act), tries);
}

// Writes what a window shows to the test output folder, for a person to look at.
inline void Snapshot(QWidget *w, const QString &name) {
    const QString dir = qEnvironmentVariable("FLUXMERE_TEST_OUT", QStringLiteral("."));
    QDir().mkpath(dir);
    w->grab().save(dir + QLatin1Char('/') + name + QStringLiteral(".png"));
}
} // namespace fm::test
