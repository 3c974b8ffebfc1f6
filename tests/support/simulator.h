#pragma once
// A simulator on a pseudo-terminal linked as "com1" in a test's folder: the QL540 one
// with its control FIFO for faults, or the Surveyor one, whose faults are fixed at start.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

namespace fm::test {
class Simulator {
public:
    Simulator(const QString &dir, QStringList args, const QString &program = QStringLiteral(FLUXMERE_SIM))
        : dir_(dir) {
        args << QStringLiteral("--link") << dir + QStringLiteral("/com1");
        if (program == QLatin1String(FLUXMERE_SIM))
            args << QStringLiteral("--control") << dir + QStringLiteral("/ctl");
        proc_.start(program, args);
        proc_.waitForReadyRead(5000);
        device = QString::fromLocal8Bit(proc_.readLine()).trimmed();
    }
    ~Simulator() {
        proc_.terminate();
        proc_.waitForFinished(3000);
    }
    void Say(const QString &line) {
        QFile ctl(dir_ + QStringLiteral("/ctl"));
        if (ctl.open(QIODevice::WriteOnly)) ctl.write((line + QLatin1Char('\n')).toLatin1());
        ctl.close();
        QThread::msleep(250);  // the simulator reads its control line between frames
    }
    QString device;

private:
    QString dir_;
    QProcess proc_;
};

#ifdef FLUXMERE_SURVEYOR_SIM
// The Surveyor simulator, paced at the line rate unless `args` holds --fast.
inline Simulator SurveyorSimulator(const QString &dir, const QStringList &args) {
    return Simulator(dir, args, QStringLiteral(FLUXMERE_SURVEYOR_SIM));
}
#endif

// Lets the event loop run for `ms`, as the application does between commands.
inline void RunEvents(int ms) {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}
}  // namespace fm::test
