#pragma once

#include <QObject>
#include <QString>
#include <QTcpServer>
#include <functional>

/// The local control port: a TCP port on the loopback address that takes words, one per line, and
/// gives each line its answer.
class ControlPort : public QObject {
    Q_OBJECT

 public:
    /// Carries out one line and returns the answer, without a line end.
    using Executor = std::function<QString(const QString& line)>;

    ControlPort(Executor executor, QObject* parent);

    /// Listens on @p port, 0 for a free one. False when the port cannot be had.
    bool listen(quint16 port);
    quint16 port() const { return server_.serverPort(); }
    QString errorString() const { return server_.errorString(); }

 private:
    void acceptConnection();

    Executor executor_;
    QTcpServer server_;
};
