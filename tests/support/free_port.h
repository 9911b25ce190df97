#pragma once

#include <QHostAddress>
#include <QTcpServer>

/// A TCP port of loopback that is free now.
inline quint16 freePort() {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}
