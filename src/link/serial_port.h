#pragma once
// The logger's serial port with the members the link relies on: a port number, open
// and closed, raw writes, draining reads, the count of bytes waiting, and an event on
// the first received byte while RThreshold is 1. 19200 baud, 8N1, no handshake.
#include <QByteArray>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>

class QSerialPort;

namespace fm {

inline constexpr int comEvReceive = 2;

class SerialPort : public QObject {
    Q_OBJECT
public:
    SerialPort();
    ~SerialPort() override;

    int CommPort() const { return commPort_; }
    void SetCommPort(int port);  // only while closed
    bool PortOpen() const;
    // Opening raises a fault when the port cannot be opened.
    void SetPortOpen(bool open);
    void Output(const QByteArray &bytes);
    QByteArray Input();
    // Up to `count` of the waiting bytes, left waiting.
    QByteArray Peek(int count) const;
    int InBufferCount() const;
    // The device went away while open (the logger or its adapter unplugged).
    bool Lost() const;
    void ClearInBuffer();
    void ClearOutBuffer();
    int RThreshold() const { return rThreshold_; }
    void SetRThreshold(int threshold);
    int CommEvent() const { return commEvent_; }
    // Called from the event loop with CommEvent() set.
    std::function<void()> OnComm;

    // Waits up to `ms` for bytes to arrive, without letting events run; returns at
    // once when bytes are there. Waiting happens on the port, not by spinning.
    void WaitForInput(int ms);
    // The device "Com n" stands for, or empty when there is none.
    static QString DevicePath(int port);
    // Opens this device instead of the one of CommPort (the command line names it).
    void SetDeviceOverride(const QString &path) { override_ = path; }

private:
    void Readable();
    std::unique_ptr<QSerialPort> port_;
    int commPort_ = 1;
    int rThreshold_ = 0;
    int commEvent_ = 0;
    bool eventPending_ = false;
    QString override_;
    // The device went away under the open port (unplugged, or the far end of a
    // pseudo-terminal closed). The port counts as open; the next output tries again.
    bool lost_ = false;
    void Lose();
    bool Reopen();
    void Configure();  // 19200 baud, 8 data bits, no parity, 1 stop bit
};

// The port of the application.
SerialPort &Seriale();

} // namespace fm
