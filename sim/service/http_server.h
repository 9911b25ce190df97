#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTcpServer>
#include <functional>

#include "sim/service/http_message.h"

/// What goes back to a client.
struct HttpAnswer {
    QByteArray bytes;    // as they are sent; none at all leave the client waiting
    bool slow = false;   // at the server's slow speed, if it has one
    bool close = false;  // the connection ends with the answer
};

/// A small HTTP/1.1 server on the loopback address. What clients send may be broken, endless or
/// half: it costs them their connection and nobody else anything.
class HttpServer : public QObject {
    Q_OBJECT

 public:
    /// Connections beyond this many are closed at once.
    static constexpr int kMaxConnections = 64;
    /// Milliseconds without a byte in either direction after which a connection is closed. Longer
    /// than any client here waits for an answer.
    static constexpr int kSilenceLimit = 60000;

    using Handler = std::function<HttpAnswer(const HttpMessage& request)>;

    HttpServer(Handler handler, QObject* parent);
    ~HttpServer() override;

    /// Listens on @p port, 0 for a free one. False when the port cannot be had.
    bool listen(quint16 port);
    /// Closes the port and every connection.
    void close();
    bool listening() const { return server_.isListening(); }
    quint16 port() const { return server_.serverPort(); }
    QString errorString() const { return server_.errorString(); }

    /// Bytes per second of slow answers, also of those under way; 0 for as fast as they go.
    void setSlowSpeed(int bytesPerSecond) { slowSpeed_ = bytesPerSecond; }
    int slowSpeed() const { return slowSpeed_; }

    /// A whole answer with status @p status and its reason, for example "200 OK".
    static QByteArray answer(const char* status, const char* mediaType, const QByteArray& body);

 private:
    class Connection;

    void acceptConnection();

    Handler handler_;
    QTcpServer server_;
    int connections_ = 0;
    int slowSpeed_ = 0;
};
