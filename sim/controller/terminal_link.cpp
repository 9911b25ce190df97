#include "sim/controller/terminal_link.h"

#include <QHostAddress>
#include <QLoggingCategory>
#include <algorithm>

#include "link/command_code.h"
#include "link/frame.h"

Q_LOGGING_CATEGORY(simLinkLog, "zel.sim.link", QtInfoMsg)

namespace {

/// Unsent bytes above which further frames are dropped: the terminal has stopped reading.
constexpr qint64 kMaxUnsent = 1024 * 1024;

void logFrame(const char* arrow, command::Direction direction, quint16 code, quint8 p1, quint8 p2,
              int length) {
    // Tracking boxes come thirty times a second and would bury everything else.
    if (code == command::TrackingBox && direction == command::Direction::FromController)
        qCDebug(simLinkLog, "%s %u TrackingBox", arrow, code);
    else
        qCInfo(simLinkLog, "%s %u %s p1=%u p2=%u length=%d", arrow, code,
               command::name(code, direction), p1, p2, length);
}

}  // namespace

TerminalLink::TerminalLink(QObject* parent)
    : QObject(parent),
      parser_([this](quint16 command, quint8 p1, quint8 p2, quint16 length, const char* payload) {
          logFrame("<-", command::Direction::ToController, command, p1, p2, length);
          emit frameReceived(command, p1, p2, QByteArray(payload, length));
      }) {
    connect(&server_, &QTcpServer::newConnection, this, &TerminalLink::acceptConnection);
}

TerminalLink::~TerminalLink() {
    // The socket dies with the server, after the members that its last signals would reach.
    if (socket_ != nullptr)
        socket_->disconnect(this);
}

bool TerminalLink::listen(quint16 port) {
    return server_.listen(QHostAddress(QHostAddress::LocalHost), port);
}

void TerminalLink::acceptConnection() {
    while (QTcpSocket* arrived = server_.nextPendingConnection()) {
        if (socket_ != nullptr)
            qCInfo(simLinkLog, "a new terminal replaces the old one");
        drop();
        socket_ = arrived;
        socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket_, &QTcpSocket::readyRead, this, &TerminalLink::read);
        connect(socket_, &QTcpSocket::bytesWritten, this, &TerminalLink::sendNextByte);
        connect(socket_, &QTcpSocket::disconnected, this, &TerminalLink::drop);
        qCInfo(simLinkLog, "terminal connected");
        read();
    }
}

void TerminalLink::drop() {
    if (socket_ == nullptr)
        return;
    qCInfo(simLinkLog, "terminal disconnected");
    QTcpSocket* const gone = socket_;
    socket_ = nullptr;
    waiting_.clear();
    parser_.reset();
    gone->disconnect(this);
    emit disconnected();
    // Frames written just now still leave; the socket sees to that by itself.
    connect(gone, &QTcpSocket::disconnected, gone, &QObject::deleteLater);
    gone->disconnectFromHost();
    if (gone->state() == QAbstractSocket::UnconnectedState)
        gone->deleteLater();
}

void TerminalLink::read() {
    QTcpSocket* const source = socket_;
    // A handler may close the connection.
    while (socket_ == source && source->bytesAvailable() > 0) {
        const qint64 got =
            source->read(parser_.writePosition(), static_cast<qint64>(parser_.writeSpace()));
        if (got <= 0)
            return;
        parser_.consume(static_cast<std::size_t>(got));
    }
}

void TerminalLink::send(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload) {
    if (socket_ == nullptr)
        return;
    const QByteArray frame =
        static_cast<std::size_t>(payload.size()) > Frame::kMaxPayloadSize
            ? QByteArray()
            : Frame::build(command, p1, p2, static_cast<quint16>(payload.size()),
                           payload.constData());
    if (frame.isEmpty()) {
        qCWarning(simLinkLog, "command %u not sent: no frame carries %d bytes", command,
                  payload.size());
        return;
    }
    logFrame("->", command::Direction::FromController, command, p1, p2, payload.size());
    sendRaw(frame);
}

void TerminalLink::sendRaw(const QByteArray& bytes) {
    if (socket_ == nullptr)
        return;
    if (socket_->bytesToWrite() + waiting_.size() > kMaxUnsent) {
        qCWarning(simLinkLog, "the terminal does not read, %d bytes dropped", bytes.size());
        return;
    }
    if (split_ || !waiting_.isEmpty()) {
        const bool idle = waiting_.isEmpty() && socket_->bytesToWrite() == 0;
        waiting_ += bytes;
        if (idle)
            sendNextByte();
    } else {
        socket_->write(bytes);
    }
}

void TerminalLink::sendNextByte() {
    // The next byte waits until the one before has left, so the two never share a segment.
    if (socket_ == nullptr || waiting_.isEmpty() || socket_->bytesToWrite() > 0)
        return;
    const char byte = waiting_.at(0);
    waiting_.remove(0, 1);
    socket_->write(&byte, 1);
}

void TerminalLink::setSplit(bool split) {
    split_ = split;
}
