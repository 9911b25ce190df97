#pragma once

#include <QMutex>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>
#include <atomic>

#include "link/frame_parser.h"
#include "link/link_progress.h"

/// The connection to the device controller: one TCP socket to the local host, kept up for the life
/// of the process.
///
/// Frames are sent only while there is a connection; what cannot be sent is dropped, nothing is
/// queued. Finished frames go to the handler given at construction. Lives in the GUI thread; every
/// write takes the write lock, so frames never interleave on the socket.
class DeviceLink : public QObject {
    Q_OBJECT

 public:
    /// How long to wait between attempts to connect, in milliseconds.
    static constexpr int kReconnectInterval = 5000;

    DeviceLink(FrameParser::Handler handler, QObject* parent);
    ~DeviceLink() override;

    /// Starts connecting to the device controller on the local host at @p port. Attempts go on
    /// until one succeeds.
    void open(quint16 port);

    /// Ends the link for good: waits at most @p flushTime milliseconds for what was written to
    /// leave the socket, then closes it. No signal of the socket is heeded any more.
    void close(int flushTime);

    /// Sends a frame without payload if the link has been reported up (connected()). Whether it
    /// could: what was sent may still be lost with the connection.
    bool send(quint16 command, quint8 p1, quint8 p2);
    /// Sends a frame if the socket itself is connected, which it is shortly before the link is
    /// reported up. @p length above Frame::kMaxPayloadSize sends nothing.
    bool send(quint16 command, quint8 p1, quint8 p2, quint16 length, const char* data);

    /// Whether the link has been reported up. Any thread.
    bool connected() const { return connected_; }
    /// Whether the socket is connected.
    bool isSocketConnected() const { return socket_->state() == QAbstractSocket::ConnectedState; }
    /// How far the frames have come.
    LinkProgress progress() const;
    /// The two parameter bytes of the frame header received last.
    quint8 firstParameter() const { return parser_.firstParameter(); }
    quint8 secondParameter() const { return parser_.secondParameter(); }
    /// Forgets a half-received frame.
    void clearReceiveState() { parser_.reset(); }

 signals:
    /// The link has been reported up, or down.
    void connectedChanged(bool connected);
    /// All frames that were sent have left the process.
    void drained();
    /// A frame has been handed to the socket.
    void sent(quint16 command, quint8 p1);

 private:
    void processReceivePacket();
    void socketConnected();
    void socketDisconnected();
    void ReconnectHost();
    void connectNow();
    bool write(const QByteArray& frame);
    bool writeFrame(quint16 command, quint8 p1, const QByteArray& frame);

    QTimer* const reconnectTimer_;
    QTcpSocket* const socket_;
    QMutex writeLock_;
    FrameParser parser_;
    quint16 port_ = 0;
    std::atomic<bool> connected_{false};
    quint32 connection_ = 0;  // number of the latest one
    qint64 accepted_ = 0;     // bytes sent on it
};
