#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>
#include <csignal>
#include <memory>

#include "cloud/http_guard.h"
#include "cloud/rest_client.h"
#include "cloud/rest_server.h"
#include "cloud_test_support.h"

namespace {

quint16 port = 0;

QByteArray post(const QByteArray& path, const QByteArray& body, const QByteArray& more = {}) {
    return "POST " + path + " HTTP/1.1\r\nHost: x\r\n" + more +
           "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

int status(const QByteArray& answer) {
    return answer.mid(9, 3).toInt();
}

}  // namespace

class CloudRestServerTest : public QObject {
    Q_OBJECT

 private:
    QTemporaryDir root_;
    FakeHost host_;
    std::unique_ptr<RestClass> client_;

    void serve() {
        client_ = std::make_unique<RestClass>(host_, nullptr);
        client_->start();
        QTRY_VERIFY(exchange(port, post("/", {}), 100).startsWith("HTTP/1.1"));
    }

 private slots:
    void initTestCase() {
        qputenv("ZEL_ROOT", root_.path().toLocal8Bit());
        port = freePort();
        qputenv("ZEL_REST_PORT", QByteArray::number(port));
        registerCloudTypes();
    }
    void cleanup() { client_.reset(); }

    void unknownPathsAndMethodsCarryTheOriginHeader() {
        serve();
        const QByteArray route = "/cloud-service/rest-api/run-recognize-mode.do";
        const QByteArray get = "GET " + route + " HTTP/1.1\r\n\r\n";
        for (const auto& [request, expected] : QList<QPair<QByteArray, int>>{
                 {post("/nowhere", "{}"), 404}, {get, 405}, {post('/' + route + "/?x", {}), 200}}) {
            const QByteArray answer = exchange(port, request);
            QCOMPARE(status(answer), expected);
            QVERIFY(answer.contains("Access-Control-Allow-Origin: *\r\n"));
        }
    }

    /// Every route answers on its own path, heeds the permission and hands over its own command.
    void routesAnswerAndHandOver_data() {
        QTest::addColumn<QByteArray>("route");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("checked");
        QTest::addColumn<int>("command");
        const QByteArray user = R"({"userInfo":{"cardInfo":{"cardNo":"123456"}}})";
        const auto row = [](const char* route, const QByteArray& body, bool checked, int command) {
            QTest::newRow(route) << QByteArray(route) << body << checked << command;
        };
        row("user-data-send.do", user, true, 0);
        row("user-data-get.do", user, true, 5);
        row("user-data-del.do", user, true, 0);
        row("device-fw-update.do", R"({"firmFile":"/f"})", false, 12);
        row("time-set.do", R"({"TimeSettings":{"Date":"2031-12-24","Time":"23:59:58"}})", true, 18);
        row("device-set.do", R"({"DeviceSettings":{}})", false, 14);
        row("system-set.do", R"({"system":"rebootDevice"})", false, 15);
        row("door-open.do", "", true, 16);
        row("user-group-info.do", "", false, 0);
        row("device-status.do", "", false, 0);
        row("run-enroll-mode.do", user, true, 10);
        row("run-recognize-mode.do", "", false, 11);
        row("user-list-get.do", "", false, 11);
    }
    void routesAnswerAndHandOver() {
        QFETCH(QByteArray, route);
        QFETCH(QByteArray, body);
        QFETCH(bool, checked);
        QFETCH(int, command);
        serve();
        const auto resultOf = [](const QByteArray& answer) {
            const QByteArray json = answer.mid(answer.indexOf("\r\n\r\n") + 4);
            return QJsonDocument::fromJson(json).object();
        };
        const QByteArray request = post("/cloud-service/rest-api/" + route, body);
        _gui_menu_ settings{};
        settings.managerControl = 2;
        host_.setSettings(settings);
        host_.takeCommands();
        QByteArray answer = exchange(port, request);
        QCOMPARE(resultOf(answer).value(QStringLiteral("resultCode")).toString(),
                 checked ? QStringLiteral("2000") : QStringLiteral("1000"));
        QCOMPARE(host_.takeCommands().size(), !checked && command != 0 ? 1 : 0);

        settings.managerControl = 1;
        host_.setSettings(settings);
        answer = exchange(port, request);
        QCOMPARE(status(answer), 200);
        QVERIFY(answer.contains("Access-Control-Allow-Origin: *\r\n"));
        QVERIFY(!answer.contains("Content-Type"));
        QCOMPARE(resultOf(answer).value(QStringLiteral("resultMessage")).toString(),
                 QStringLiteral("succeed"));
        const auto commands = host_.takeCommands();
        QCOMPARE(commands.size(), command == 0 ? 0 : 1);
        QCOMPARE(commands.isEmpty() ? 0 : commands[0].first, command);
    }

    void resultCodesHaveTheirTexts() {
        const auto text = [](int code) {
            const QJsonObject envelope = RestServer::getErrCodeJSon(code);
            return envelope.value(QStringLiteral("resultCode")).toString() + QLatin1Char(' ') +
                   envelope.value(QStringLiteral("resultMessage")).toString();
        };
        QCOMPARE(text(0), QStringLiteral("1000 succeed"));
        QCOMPARE(text(2000), QStringLiteral("2000 Do not allow manager control"));
        QCOMPARE(text(3001), QStringLiteral("3001 check User CardNo Length (Min ~ Max : 6 ~ 11 )"));
        QCOMPARE(text(2003), QStringLiteral("9999 Unknown Error"));
    }

    /// A client that keeps asking and never reads is cut off instead of being answered into memory.
    void aClientThatNeverReadsIsCutOff() {
        serve();
        QTcpSocket socket;
        socket.setReadBufferSize(1);
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        QVERIFY(socket.waitForConnected());
        const QByteArray request =
            post("/cloud-service/rest-api/device-status.do", {}, "Connection: keep-alive\r\n");
        for (int i = 0; i < 100000 && socket.state() == QAbstractSocket::ConnectedState; ++i) {
            socket.write(request);
            socket.waitForBytesWritten(1000);
        }
        QVERIFY(socket.state() != QAbstractSocket::ConnectedState);
    }

    /// Nothing that is not a request gets an answer with a text in it, and the next client is
    /// served as ever.
    void brokenRequestsAreRefusedWithoutAText_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("expected");
        const QByteArray line = "POST /x HTTP/1.1\r\n";
        QTest::newRow("negative length") << line + "Content-Length: -1\r\n\r\n{}" << 413;
        QTest::newRow("length beyond numbers")
            << line + "Content-Length: 99999999999999999999999\r\n\r\n{}" << 400;
        QTest::newRow("length too large") << line + "Content-Length: 2097153\r\n\r\n{}" << 413;
        QTest::newRow("bad host") << line + "Host: [::1\r\nContent-Length: 2\r\n\r\n{}" << 400;
        QTest::newRow("bad type") << line + "Content-Type: ;;\r\nContent-Length: 2\r\n\r\n{}"
                                  << 415;
        QTest::newRow("no method") << QByteArray("NOTHING / HTTP/1.1\r\n\r\n") << 400;
        QTest::newRow("chunk size negative")
            << line + "Transfer-Encoding: chunked\r\n\r\n-5\r\n{}\r\n0\r\n\r\n"
            << 400;
        QTest::newRow("chunk size huge")
            << line + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n7fffffffffffffff\r\n"
            << 413;
        QTest::newRow("endless head") << line + "A: " + QByteArray(20000, 'a') << 431;
        QTest::newRow("endless path") << "POST /" + QByteArray(20000, '/') << 431;
        QTest::newRow("long path") << "POST /" + QByteArray(2000, '/') + " HTTP/1.1\r\n\r\n" << 414;
    }
    void brokenRequestsAreRefusedWithoutAText() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, expected);
        serve();
        const QByteArray answer = exchange(port, bytes);
        QCOMPARE(status(answer), expected);
        QVERIFY(answer.contains("Access-Control-Allow-Origin: *\r\n"));
        QVERIFY(answer.endsWith("Content-Length: 0\r\n\r\n"));
        QCOMPARE(status(exchange(port, post("/x", "{}"))), 404);
    }

    void bodiesUpToTwoMebibytesPass() {
        serve();
        const int most = static_cast<int>(HttpGuard::kMaxBody);
        const QByteArray headers = "X-Padding: " + QByteArray(8000, 'x') + "\r\n";
        QCOMPARE(status(exchange(port, post("/x", QByteArray(most, 'a'), headers))), 404);
        QCOMPARE(status(exchange(port, post("/x", QByteArray(most + 1, 'a')))), 413);

        QByteArray chunked = "POST /x HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n";
        for (int i = 0; i < 32; ++i)
            chunked += "10000\r\n" + QByteArray(0x10000, 'a') + "\r\n";
        QCOMPARE(status(exchange(port, chunked + "0\r\n\r\n")), 404);
        QCOMPARE(status(exchange(port, chunked + "1\r\na\r\n0\r\n\r\n")), 413);
    }

    void aRequestMayComeByteByByteAndAConnectionMayServeMany() {
        serve();
        QTcpSocket socket;
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        QVERIFY(socket.waitForConnected());
        const QByteArray request = post("/x", "{}", "Connection: keep-alive\r\n");
        for (int round = 0; round < 3; ++round) {
            for (const char byte : request) {
                socket.write(&byte, 1);
                socket.flush();
            }
            QVERIFY(socket.waitForReadyRead(3000));
            QCOMPARE(status(socket.readAll()), 404);
        }
        QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
    }

    /// Half requests, floods and clients that never read hold no more than their share.
    void floodsAreBounded() {
        serve();
        std::vector<std::unique_ptr<QTcpSocket>> sockets;
        const QByteArray half =
            "POST /x HTTP/1.1\r\nContent-Length: 2000000\r\n\r\n" + QByteArray(1000000, 'a');
        for (int i = 0; i < 300; ++i) {
            auto socket = std::make_unique<QTcpSocket>();
            socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port);
            if (socket->waitForConnected(1000) && i < 40) {
                socket->write(half);
                socket->waitForBytesWritten(1000);
            }
            sockets.push_back(std::move(socket));
        }
        QTRY_VERIFY(std::count_if(sockets.begin(), sockets.end(), [](const auto& socket) {
                        return socket->state() == QAbstractSocket::ConnectedState;
                    }) <= HttpGuard::kMaxConnections);
        sockets.clear();
        QTRY_COMPARE(status(exchange(port, post("/x", "{}"), 500)), 404);
    }

    void stoppingIsOrderlyAtAnyMoment() {
        for (int round = 0; round < 60; ++round) {
            auto client = std::make_unique<RestClass>(host_, nullptr);
            client->start();
            QThread::usleep(static_cast<unsigned long>(round % 20) * 150);
            QTcpSocket idle;
            if (round % 3 != 0) {
                idle.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
                if (idle.waitForConnected(50))
                    idle.write(round % 3 == 1 ? post("/x", "{}") : QByteArray("POST /x HT"));
                idle.flush();
            }
            QElapsedTimer time;
            time.start();
            client.reset();
            QVERIFY2(time.elapsed() < 500, qPrintable(QString::number(time.elapsed())));
        }
    }

    void aTakenPortIsWaitedFor() {
        QTcpServer taken;
        QVERIFY(taken.listen(QHostAddress::Any, port));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("cannot listen on port \\d+")));
        client_ = std::make_unique<RestClass>(host_, nullptr);
        client_->start();
        QTest::qWait(1200);
        taken.close();
        QTRY_COMPARE(status(exchange(port, post("/x", "{}"), 100)), 404);
    }

    void noSignalHandlerIsInstalled() {
        const auto dispositions = [] {
            QList<quintptr> all;
            for (int number = 1; number < 32; ++number) {
                struct sigaction action {};
                sigaction(number, nullptr, &action);
                all.append(reinterpret_cast<quintptr>(action.sa_handler));
            }
            return all;
        };
        const QList<quintptr> before = dispositions();
        serve();
        QCOMPARE(dispositions(), before);
    }
};

QTEST_GUILESS_MAIN(CloudRestServerTest)
#include "cloud_rest_server_test.moc"
