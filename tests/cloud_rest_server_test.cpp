#include <sqlite3.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>
#include <atomic>
#include <csignal>
#include <memory>

#include "cloud/http_guard.h"
#include "cloud/rest_client.h"
#include "cloud_test_support.h"

namespace {

quint16 port = 0;
/// Milliseconds for an orderly end: one second, and as much again for a busy machine.
constexpr int kOrderly = 2000;

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
        const QByteArray next = exchange(port, post("/x", "{}"));
        QCOMPARE(status(next), 404);
        QVERIFY(next.contains("Access-Control-Allow-Origin: *\r\n"));
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

    /// What the GUI thread has not carried out yet is limited; here it does nothing between orders.
    void ordersWaitForTheGuiThread() {
        serve();
        const QByteArray order =
            post("/cloud-service/rest-api/system-set.do", R"({"system":"rebootDevice"})");
        const auto accepted = [&] { return exchange(port, order).contains("\"1000\""); };
        int before = 0;
        while (before < 100 && accepted())
            ++before;
        QVERIFY(before > 1 && before < 100);
        QTRY_VERIFY(accepted());
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
            QVERIFY2(time.elapsed() < kOrderly, qPrintable(QString::number(time.elapsed())));
        }
    }

    /// Each of these requests waits half a second for the table's writer.
    void stoppingDoesNotWaitForWhatIsQueued() {
        serve();
        const QString folder = root_.path() + QStringLiteral("/mnt/data/db_user2");
        QDir().mkpath(folder);
        sqlite3* writer = nullptr;
        QCOMPARE(sqlite3_open(qPrintable(folder + QStringLiteral("/DB_userT.bin")), &writer),
                 SQLITE_OK);
        QCOMPARE(sqlite3_exec(writer, "CREATE TABLE USER_T (N, ID, MARK); BEGIN EXCLUSIVE", nullptr,
                              nullptr, nullptr),
                 SQLITE_OK);
        QTcpSocket sockets[8];
        for (QTcpSocket& socket : sockets) {
            socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
            QVERIFY(socket.waitForConnected());
            socket.write(post("/cloud-service/rest-api/user-list-get.do", {}));
            socket.flush();
        }
        int begun = 0;
        QTRY_VERIFY((begun += host_.takeCommands().size()) >= 2);
        QElapsedTimer time;
        time.start();
        client_.reset();
        QVERIFY2(time.elapsed() < kOrderly, qPrintable(QString::number(time.elapsed())));
        sqlite3_close(writer);
    }

    void aTakenPortIsWaitedFor() {
        static std::atomic<bool> complained{false};
        QTcpServer taken;
        QVERIFY(taken.listen(QHostAddress::Any, port));
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString&) { complained = true; });
        client_ = std::make_unique<RestClass>(host_, nullptr);
        client_->start();
        QTRY_VERIFY(complained);
        qInstallMessageHandler(before);
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
