#pragma once

#include <QHash>
#include <QHostAddress>
#include <QList>
#include <QMutex>
#include <QMutexLocker>
#include <QPair>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <atomic>
#include <functional>
#include <utility>

#include "cloud/cloud_host.h"
#include "cloud/management_host.h"
#include "tests/support/free_port.h"
#include "tests/support/test_root.h"

/// The terminal around the cloud link, as far as the link sees it.
class FakeHost final : public CloudHost {
 public:
    _gui_menu_ settings() const override {
        const QMutexLocker lock(&lock_);
        return settings_;
    }
    bool settingsCurrent() const override { return arrived; }
    void setSettings(const _gui_menu_& settings) {
        const QMutexLocker lock(&lock_);
        settings_ = settings;
    }
    void parsingRestCommand(int command, QVariant parameter) override {
        if (carryOut)
            return carryOut(command, parameter);
        const QMutexLocker lock(&lock_);
        commands_.append({command, parameter});
    }
    QList<QPair<int, QVariant>> takeCommands() {
        const QMutexLocker lock(&lock_);
        return std::exchange(commands_, {});
    }
    void updateRestConnectStatus(bool up) override { link = up; }
    void completedRestCommand(QVariant procIdx) override { completed.append(procIdx); }
    std::uint32_t selfCheckWord() const override { return selfCheck; }

    std::function<void(int, const QVariant&)> carryOut;
    std::atomic<bool> arrived{true};
    bool link = false;
    QList<QVariant> completed;
    std::uint32_t selfCheck = 0;

 private:
    mutable QMutex lock_;
    _gui_menu_ settings_{};
    QList<QPair<int, QVariant>> commands_;
};

/// Keeps what a command does, in its order: frames as "code(p1,p2)length", the rest by name.
class FakeTerminal final : public ManagementHost {
 public:
    bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) override {
        return SendCommand(cmd, p1, p2, 0, nullptr);
    }
    bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2, unsigned short len,
                     const char* data) override {
        if (progress.connection == 0)
            return false;
        log << QStringLiteral("%1(%2,%3)%4").arg(cmd).arg(p1).arg(p2).arg(len);
        payloads << QByteArray(data, len);
        progress.accepted += 8 + len;
        if (!stuck)
            progress.left = progress.accepted;
        return true;
    }
    LinkProgress linkProgress() const override { return progress; }
    void GetGuiMenu(_gui_menu_* record) const override { *record = menu; }
    void SetGuiMenu(const _gui_menu_* record) override {
        menu = *record;
        log << QStringLiteral("menu");
    }
    void SetGuiUser(const _gui_user_* record) override {
        user = *record;
        log << QStringLiteral("user");
    }
    void showStandby() override { log << QStringLiteral("stayWindow"); }
    void showLive() override { log << QStringLiteral("liveWindow"); }
    void showPopupText(const QString& key) override { log << key; }
    void startEnrolment() override { log << QStringLiteral("enrol"); }
    void initRestCall() override { log << QStringLiteral("timers"); }
    void setIp(const AddressBlock&) override { log << QStringLiteral("ip"); }

    QString takeLog() { return std::exchange(log, {}).join(QLatin1Char(' ')); }
    /// The link ends and comes back, with nothing of what was sent on it.
    void reconnect() { progress = {progress.connection + 1, 0, 0}; }

    LinkProgress progress{1, 0, 0};
    bool stuck = false;  // nothing that is sent leaves
    _gui_menu_ menu{};
    _gui_user_ user{};
    QStringList log;
    QList<QByteArray> payloads;
};

/// An HTTP service on loopback: keeps each request and answers it with what the function says,
/// byte for byte; with nothing it stays silent.
class FakeService : public QTcpServer {
 public:
    struct Request {
        QByteArray line;
        QByteArray head;
        QByteArray body;
        QByteArray header(const QByteArray& name) const {
            for (const QByteArray& row : head.split('\n')) {
                if (row.startsWith(name + ": "))
                    return row.mid(name.size() + 2).trimmed();
            }
            return {};
        }
    };

    FakeService() {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::bytesWritten, this,
                    [this](qint64 bytes) { written += bytes; });
        });
    }

    static QByteArray json(const QByteArray& body) {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n\r\n" + body;
    }

    QUrl url(const QString& path = {}) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(serverPort()) + path);
    }
    /// Settings of a terminal that this is the management service of.
    _gui_menu_ settings() const {
        _gui_menu_ menu{};
        menu.network.own.managerAddress[0] = 127;
        menu.network.own.managerAddress[3] = 1;
        menu.network.own.managerPort = serverPort();
        return menu;
    }
    /// Answers every request with these bytes, or this body, from now on.
    void says(const QByteArray& bytes) {
        answer = [bytes](const Request&) { return bytes; };
    }
    void answerWith(const QByteArray& body) { says(json(body)); }

    QList<Request> requests;
    std::function<QByteArray(const Request&)> answer;
    bool closeAfterAnswer = false;
    QPointer<QTcpSocket> last;  // where the latest request came from
    qint64 written = 0;         // bytes that clients have taken

 private:
    void read(QTcpSocket* socket) {
        QByteArray& data = pending_[socket];
        data += socket->readAll();
        const int end = data.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        Request request;
        request.head = data.left(end + 2);
        request.line = request.head.left(request.head.indexOf("\r\n"));
        request.body = data.mid(end + 4);
        if (request.body.size() < request.header("Content-Length").toInt())
            return;
        pending_.remove(socket);
        requests.append(request);
        last = socket;
        socket->write(answer ? answer(request) : QByteArray());
        if (closeAfterAnswer)
            socket->disconnectFromHost();
    }

    QHash<QTcpSocket*, QByteArray> pending_;
};
