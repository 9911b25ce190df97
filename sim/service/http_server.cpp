#include "sim/service/http_server.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTimer>
#include <utility>

namespace {

constexpr qint64 kReadBuffer = 64 * 1024;
/// Slow answers go out in this many pieces a second.
constexpr int kPiecesPerSecond = 10;

}  // namespace

/// One client. Requests are answered in turn: what comes behind one that is being answered waits
/// in the socket.
class HttpServer::Connection : public QObject {
 public:
    Connection(QTcpSocket* socket, HttpServer* server)
        : QObject(server), server_(*server), socket_(socket) {
        ++server_.connections_;
        socket_->setParent(this);
        socket_->setReadBufferSize(kReadBuffer);
        silence_.setSingleShot(true);
        silence_.setInterval(kSilenceLimit);
        pieces_.setInterval(1000 / kPiecesPerSecond);
        connect(&silence_, &QTimer::timeout, socket_, &QTcpSocket::abort);
        connect(&pieces_, &QTimer::timeout, this, [this] {
            sendPiece();
            read();
        });
        connect(socket_, &QTcpSocket::bytesWritten, &silence_, qOverload<>(&QTimer::start));
        connect(socket_, &QTcpSocket::readyRead, this, &Connection::read);
        connect(socket_, &QTcpSocket::disconnected, this, &Connection::end);
        read();
    }

    ~Connection() override {
        // The socket goes last, and would report the end to what is no longer there.
        socket_->disconnect();
        --server_.connections_;
    }

    void abort() { socket_->abort(); }

 private:
    void read() {
        silence_.start();
        while (!answering_) {
            switch (reader_.feed(socket_->readAll())) {
                case HttpMessageReader::State::Incomplete:
                    return;
                case HttpMessageReader::State::Broken:
                    send({answer("400 Bad Request", "", {}), false, true});
                    return;
                case HttpMessageReader::State::Whole:
                    break;
            }
            const HttpMessage& request = reader_.message();
            HttpAnswer given = server_.handler_(request);
            if (qstricmp(request.header("Connection").constData(), "close") == 0 ||
                request.word(2) == "HTTP/1.0")
                given.close = true;
            send(given);
        }
    }

    void send(const HttpAnswer& given) {
        answering_ = true;
        answer_ = given;
        sent_ = 0;
        // The handler may have closed the server.
        if (!answer_.bytes.isEmpty() && socket_->isOpen())
            sendPiece();
    }

    void sendPiece() {
        const int left = answer_.bytes.size() - sent_;
        int size = left;
        if (answer_.slow && server_.slowSpeed_ > 0)
            size = qBound(1, server_.slowSpeed_ / kPiecesPerSecond, left);
        socket_->write(answer_.bytes.constData() + sent_, size);
        sent_ += size;
        if (size < left) {
            pieces_.start();
            return;
        }
        pieces_.stop();
        if (answer_.close) {
            socket_->disconnectFromHost();
            return;
        }
        answering_ = false;
    }

    void end() {
        pieces_.stop();
        silence_.stop();
        deleteLater();
    }

    HttpServer& server_;
    QTcpSocket* const socket_;
    HttpMessageReader reader_;
    QTimer silence_;
    QTimer pieces_;
    HttpAnswer answer_;
    int sent_ = 0;
    bool answering_ = false;
};

HttpServer::HttpServer(Handler handler, QObject* parent)
    : QObject(parent), handler_(std::move(handler)) {
    connect(&server_, &QTcpServer::newConnection, this, &HttpServer::acceptConnection);
}

HttpServer::~HttpServer() {
    // They count themselves out here.
    qDeleteAll(QObjectList(children()));
}

bool HttpServer::listen(quint16 port) {
    return server_.listen(QHostAddress(QHostAddress::LocalHost), port);
}

void HttpServer::close() {
    server_.close();
    // Not deleted here: one of them may be the reason of this call.
    for (QObject* child : QObjectList(children()))
        static_cast<Connection*>(child)->abort();
}

void HttpServer::acceptConnection() {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        if (connections_ < kMaxConnections)
            new Connection(socket, this);
        else
            delete socket;
    }
}

QByteArray HttpServer::answer(const char* status, const char* mediaType, const QByteArray& body) {
    QByteArray head = QByteArrayLiteral("HTTP/1.1 ") + status + "\r\n";
    if (*mediaType != '\0')
        head += QByteArrayLiteral("Content-Type: ") + mediaType + "\r\n";
    return head + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}
