#include "link/serial_port.h"

#include "core/app_paths.h"
#include "core/fault.h"

#include <poll.h>
#include <QFileInfo>
#include <QSerialPort>
#include <QSerialPortInfo>
#include <QThread>
#include <QTimer>
#include <algorithm>

namespace fm {

SerialPort &Seriale() {
    static SerialPort port;
    return port;
}

SerialPort::SerialPort() : port_(std::make_unique<QSerialPort>()) {
    port_->setReadBufferSize(0);  // at least the 15000 bytes of the older control
    connect(port_.get(), &QSerialPort::readyRead, this, &SerialPort::Readable);
    // A hung-up device wakes the loop without end: it is closed until the next command.
    connect(port_.get(), &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError e) {
        if (e == QSerialPort::ResourceError) QTimer::singleShot(0, this, [this] { Lose(); });
    });
}

void SerialPort::Lose() {
    if (!port_->isOpen()) return;
    port_->close();
    lost_ = true;
}

// The device may be back (plugged in again): the port opens as it did at first.
bool SerialPort::Reopen() {
    if (!port_->open(QIODevice::ReadWrite)) return false;
    lost_ = false;
    Configure();
    return true;
}

void SerialPort::Configure() {
    port_->clearError();
    port_->setBaudRate(QSerialPort::Baud19200);
    port_->setDataBits(QSerialPort::Data8);
    port_->setParity(QSerialPort::NoParity);
    port_->setStopBits(QSerialPort::OneStop);
    port_->setFlowControl(QSerialPort::NoFlowControl);
    port_->clear();
}

SerialPort::~SerialPort() = default;

QString SerialPort::DevicePath(int port) {
    // A "comN" link beside the options file names the device, as Wine's dosdevices do.
    const QFileInfo link(WritableDir() + QStringLiteral("/com%1").arg(port));
    if (link.exists() || link.isSymLink()) return link.absoluteFilePath();
    auto ports = QSerialPortInfo::availablePorts();
    std::sort(ports.begin(), ports.end(),
              [](const QSerialPortInfo &a, const QSerialPortInfo &b) { return a.portName() < b.portName(); });
    if (port >= 1 && port <= int(ports.size())) return ports[port - 1].systemLocation();
    return {};
}

void SerialPort::SetCommPort(int port) {
    if (PortOpen()) Raise(8005, QStringLiteral("Port already open"));
    commPort_ = port;
}

bool SerialPort::PortOpen() const { return port_->isOpen() || lost_; }

void SerialPort::SetPortOpen(bool open) {
    if (!open) {
        lost_ = false;
        if (port_->isOpen()) port_->close();
        return;
    }
    if (PortOpen()) Raise(8005, QStringLiteral("Port already open"));
    const QString path = override_.isEmpty() ? DevicePath(commPort_) : override_;
    if (path.isEmpty()) Raise(8002, QStringLiteral("Invalid port number"));
    port_->setPortName(QFileInfo(path).isSymLink() ? QFileInfo(path).canonicalFilePath() : path);
    if (!port_->open(QIODevice::ReadWrite)) {
        QString why = port_->errorString();
        if (port_->error() == QSerialPort::PermissionError)
            why += QStringLiteral(" (on Linux, add your user to the dialout group and log in again)");
        Raise(8002, why);
    }
    Configure();
}

void SerialPort::Output(const QByteArray &bytes) {
    // A lost device takes the bytes nowhere, as an unplugged cable does: the reply's
    // time-out then counts the failure.
    if (lost_ && !Reopen()) return;
    if (!port_->isOpen()) Raise(8018, QStringLiteral("Operation valid only when the port is open"));
    port_->write(bytes);
    port_->flush();
}

QByteArray SerialPort::Input() { return port_->isOpen() ? port_->readAll() : QByteArray(); }

QByteArray SerialPort::Peek(int count) const { return port_->isOpen() ? port_->peek(count) : QByteArray(); }

int SerialPort::InBufferCount() const { return port_->isOpen() ? int(port_->bytesAvailable()) : 0; }

void SerialPort::ClearInBuffer() {
    if (!port_->isOpen()) return;
    port_->readAll();
    port_->clear(QSerialPort::Input);
}

bool SerialPort::Lost() const {
    if (lost_) return true;
    if (!port_->isOpen()) return false;
    if (port_->error() == QSerialPort::ResourceError) return true;
    // A device that went away hangs up its descriptor before Qt notices a failed read.
    pollfd p{int(port_->handle()), POLLIN, 0};
    return ::poll(&p, 1, 0) > 0 && (p.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

void SerialPort::ClearOutBuffer() {
    if (port_->isOpen()) port_->clear(QSerialPort::Output);
}

void SerialPort::SetRThreshold(int threshold) {
    rThreshold_ = threshold;
    // Bytes already waiting raise the event as a new one would.
    if (threshold > 0 && InBufferCount() > 0) Readable();
}

void SerialPort::Readable() {
    if (rThreshold_ <= 0 || eventPending_) return;
    // Delivered from the event loop, never inside the caller that armed it.
    eventPending_ = true;
    QTimer::singleShot(0, this, [this] {
        eventPending_ = false;
        if (rThreshold_ <= 0 || InBufferCount() == 0) return;
        commEvent_ = comEvReceive;
        if (OnComm) OnComm();
    });
}

void SerialPort::WaitForInput(int ms) {
    if (ms <= 0) return;
    if (!port_->isOpen()) {
        QThread::msleep(ulong(ms));  // nothing can come: sleep rather than spin
        return;
    }
    const int before = InBufferCount();
    // readyRead is emitted inside; Readable only queues, so no event handler runs here.
    port_->waitForReadyRead(ms);
    Q_UNUSED(before);
}

} // namespace fm
