#pragma once
#include <QStringList>
class QWidget;

namespace fm {
// The process's entry: start-up, the event loop, and the way out.
int Main(int argc, char **argv);

// The start-up after the application object exists. splashMs is how long the splash
// stays up at least; false when the start was stopped.
bool StartUp(int splashMs, const QStringList &arguments);

// The single way out: stops the timers, offers to save, records the window state,
// closes the other windows, releases the language store and writes the options.
// With no form it also ends the process.
void ShutDown(QWidget *form);
} // namespace fm
