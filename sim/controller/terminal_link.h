#pragma once

#include <QByteArray>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>

#include "link/frame_parser.h"

/// The controller's end of the device link: listens on the loopback address and serves one
/// terminal at a time. A new connection replaces the old one, as a restarted terminal has no other
/// way of saying that the old connection is dead.
///
/// Every frame is logged by name in both directions. Lives in one thread.
class TerminalLink : public QObject {
    Q_OBJECT

 public:
    explicit TerminalLink(QObject* parent);
    ~TerminalLink() override;

    /// Listens on @p port, 0 for a free one. False when the port cannot be had.
    bool listen(quint16 port);
    /// The port listened on, 0 if none.
    quint16 port() const { return server_.serverPort(); }
    QString errorString() const { return server_.errorString(); }
    bool connected() const { return socket_ != nullptr; }

    /// Sends a frame; dropped without a terminal, with a payload that no frame carries and when
    /// the terminal has not read for long.
    void send(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload);
    /// Sends @p bytes as they are, behind whatever waits to be sent.
    void sendRaw(const QByteArray& bytes);
    /// Closes the connection; the terminal is expected to come back.
    void drop();

    /// Whether every byte travels alone, so that the terminal's parser meets every possible split.
    void setSplit(bool split);
    bool split() const { return split_; }

 signals:
    void frameReceived(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload);
    /// The terminal has gone, or was cut off.
    void disconnected();

 private:
    void acceptConnection();
    void read();
    void sendNextByte();

    QTcpServer server_;
    QTcpSocket* socket_ = nullptr;
    FrameParser parser_;
    QByteArray waiting_;  // bytes that still have to go one by one
    bool split_ = false;
};
