#include "link/device_link.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QLoggingCategory>
#include <QMutexLocker>
#include <algorithm>
#include <utility>

#include "link/command_code.h"

Q_LOGGING_CATEGORY(linkLog, "zel.link", QtInfoMsg)

namespace {

/// Bytes waiting in the socket above which further frames are dropped.
constexpr qint64 kMaxUnsent = 256 * 1024;

}  // namespace

DeviceLink::DeviceLink(FrameParser::Handler handler, QObject* parent)
    : QObject(parent),
      reconnectTimer_(new QTimer(this)),
      socket_(new QTcpSocket(this)),
      parser_(std::move(handler)) {
    reconnectTimer_->setInterval(kReconnectInterval);
    connect(reconnectTimer_, &QTimer::timeout, this, &DeviceLink::ReconnectHost);
    connect(socket_, &QTcpSocket::readyRead, this, &DeviceLink::processReceivePacket);
    connect(socket_, &QTcpSocket::connected, this, &DeviceLink::socketConnected);
    connect(socket_, &QTcpSocket::disconnected, this, &DeviceLink::socketDisconnected);
    connect(socket_, &QTcpSocket::bytesWritten, this, [this] {
        if (socket_->bytesToWrite() == 0)
            emit drained();
    });
    connect(socket_, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError) {
        // An attempt that fails never reports a disconnection of its own.
        if (socket_->state() == QAbstractSocket::UnconnectedState ||
            socket_->state() == QAbstractSocket::ConnectingState)
            socketDisconnected();
    });
}

DeviceLink::~DeviceLink() {
    close(0);
}

void DeviceLink::open(quint16 port) {
    port_ = port;
    connectNow();
}

void DeviceLink::close(int flushTime) {
    reconnectTimer_->stop();
    socket_->disconnect(this);
    connected_ = false;
    parser_.reset();
    const QDeadlineTimer deadline(flushTime);
    while (isSocketConnected() && socket_->bytesToWrite() > 0 && !deadline.hasExpired()) {
        if (!socket_->waitForBytesWritten(static_cast<int>(deadline.remainingTime())))
            break;
    }
    socket_->abort();
}

void DeviceLink::connectNow() {
    // An attempt that still hangs is given up: there is only ever one socket.
    if (socket_->state() != QAbstractSocket::UnconnectedState) {
        const QSignalBlocker quiet(socket_);
        socket_->abort();
    }
    accepted_ = 0;
    socket_->connectToHost(QHostAddress(QHostAddress::LocalHost), port_, QIODevice::ReadWrite);
}

void DeviceLink::socketConnected() {
    reconnectTimer_->stop();
    if (connected_)
        return;
    connected_ = true;
    ++connection_;
    // Frames are small; gathered into larger packets some would be some 40 ms late.
    socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    qCInfo(linkLog, "connected to the device controller");
    write(Frame::build(command::Greeting, 0, 0));
    emit connectedChanged(true);
}

void DeviceLink::socketDisconnected() {
    if (connected_)
        qCInfo(linkLog, "device controller gone, trying again every %d s",
               kReconnectInterval / 1000);
    else if (!reconnectTimer_->isActive())
        qCInfo(linkLog, "no device controller yet, trying every %d s", kReconnectInterval / 1000);
    const bool wasConnected = connected_.exchange(false);
    if (!reconnectTimer_->isActive())
        reconnectTimer_->start();
    if (wasConnected)
        emit connectedChanged(false);
}

void DeviceLink::ReconnectHost() {
    if (connected_)
        reconnectTimer_->stop();
    else
        connectNow();
}

void DeviceLink::processReceivePacket() {
    // Only what was there at entry: what arrives meanwhile announces itself again.
    qint64 available = socket_->bytesAvailable();
    // A handler may end the link.
    while (available > 0 && socket_->isOpen()) {
        const qint64 wanted = std::min<qint64>(available, parser_.writeSpace());
        const qint64 got = socket_->read(parser_.writePosition(), wanted);
        if (got <= 0)
            return;
        available -= got;
        parser_.consume(static_cast<std::size_t>(got));
    }
}

LinkProgress DeviceLink::progress() const {
    if (!connected_ || !isSocketConnected())
        return {};
    return {connection_, accepted_, accepted_ - socket_->bytesToWrite()};
}

bool DeviceLink::send(quint16 command, quint8 p1, quint8 p2) {
    return connected_ && writeFrame(command, p1, Frame::build(command, p1, p2));
}

bool DeviceLink::send(quint16 command, quint8 p1, quint8 p2, quint16 length, const char* data) {
    if (!isSocketConnected())
        return false;
    const QByteArray frame = Frame::build(command, p1, p2, length, data);
    if (frame.isEmpty()) {
        qCWarning(linkLog, "command %d not sent: %d bytes from nowhere or too many", command,
                  length);
        return false;
    }
    return writeFrame(command, p1, frame);
}

bool DeviceLink::writeFrame(quint16 command, quint8 p1, const QByteArray& frame) {
    if (!write(frame))
        return false;
    emit sent(command, p1);
    return true;
}

bool DeviceLink::write(const QByteArray& frame) {
    const QMutexLocker lock(&writeLock_);
    // A peer that no longer reads must not make the process grow.
    if (socket_->bytesToWrite() > kMaxUnsent) {
        qCWarning(linkLog, "the device controller does not read, frame dropped");
        return false;
    }
    if (socket_->write(frame) != frame.size())
        return false;
    accepted_ += frame.size();
    return true;
}
