#include "sim/common/control_port.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <memory>
#include <utility>

#include "sim/common/line_buffer.h"

namespace {

/// Answers waiting for a client that does not read, in bytes; above it the client is cut off.
constexpr qint64 kMaxUnsent = 1024 * 1024;
constexpr qint64 kReadBuffer = 64 * 1024;

}  // namespace

ControlPort::ControlPort(Executor executor, QObject* parent)
    : QObject(parent), executor_(std::move(executor)) {
    connect(&server_, &QTcpServer::newConnection, this, &ControlPort::acceptConnection);
}

bool ControlPort::listen(quint16 port) {
    return server_.listen(QHostAddress(QHostAddress::LocalHost), port);
}

void ControlPort::acceptConnection() {
    while (QTcpSocket* client = server_.nextPendingConnection()) {
        client->setReadBufferSize(kReadBuffer);
        connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
        const auto read = [this, client, lines = std::make_shared<LineBuffer>()] {
            lines->feed(client->readAll(), [this, client](const QByteArray& line) {
                if (client->state() != QAbstractSocket::ConnectedState)
                    return;
                const QString answer = executor_(QString::fromUtf8(line));
                if (!answer.isEmpty())
                    client->write(answer.toUtf8() + '\n');
                if (client->bytesToWrite() > kMaxUnsent)
                    client->abort();
            });
            // A client that has said all it has to (nc -N) still gets its answer: the socket closes
            // as soon as the end of its words is read.
            client->flush();
        };
        connect(client, &QTcpSocket::readyRead, this, read);
        read();
    }
}
