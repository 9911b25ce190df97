#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <time.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>
#include <atomic>
#include <memory>
#include <thread>

#include "cloud/http_guard.h"
#include "cloud/rest_client.h"
#include "cloud/rest_server.h"
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

const QByteArray kRoute = "/cloud-service/rest-api/run-recognize-mode.do";
const QByteArray kAgain = "Connection: keep-alive\r\n";

/// A client of the server.
class Client {
 public:
    explicit Client(const QByteArray& bytes = {}) {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        socket.waitForConnected();
        send(bytes);
    }
    void send(const QByteArray& bytes) {
        socket.write(bytes);
        socket.flush();
    }
    /// The first @p count answers, or what has come until the server closed or said nothing more.
    QByteArray answers(int count = 1) {
        QByteArray all;
        const auto whole = [&all] { return all.count("\r\n\r\n"); };
        while (whole() < count && (socket.bytesAvailable() > 0 || socket.waitForReadyRead(3000)))
            all += socket.readAll();
        return all;
    }
    bool isOpen() const { return socket.state() == QAbstractSocket::ConnectedState; }

    QTcpSocket socket;
};

/// The server alone, with limits of its own.
class LoneServer {
 public:
    LoneServer(FakeHost& host, const HttpGuard::Limits& limits, bool isUp = true)
        : server_({Pistache::Ipv4::loopback(), port}, host) {
        server_.init(1);
        server_.setLimits(limits);
        thread_ = std::thread([this] { server_.start(); });
        while (isUp && status(exchange(port, post("/", {}), 100)) != 404)
            QThread::msleep(5);
    }
    ~LoneServer() {
        server_.shutdown();
        thread_.join();
    }

 private:
    RestServer server_;
    std::thread thread_;
};

/// A client without a library that reads, writes or closes of its own accord.
class RawClient {
 public:
    ~RawClient() { ::close(socket_); }
    bool connect() {
        const sockaddr_in address{AF_INET, htons(port), {htonl(INADDR_LOOPBACK)}, {}};
        return ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    bool send(const QByteArray& bytes) {
        return ::send(socket_, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                      MSG_NOSIGNAL) >= 0;
    }
    QByteArray receive(int size) {
        QByteArray bytes(size, '\0');
        ::recv(socket_, bytes.data(), static_cast<std::size_t>(size), MSG_WAITALL);
        return bytes;
    }

 private:
    const int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

/// Keeps every further file and connection from being opened.
class NoDescriptors {
 public:
    NoDescriptors() {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit none{3, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }

 private:
    rlimit before_{};
};

/// CPU time of the process, in milliseconds.
qint64 cpuTime() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1000000;
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
    void cutAnywhere(const QByteArray& request) {
        QCOMPARE(statusOfEveryCut(request), QList<int>({200}));
        QCOMPARE(host_.takeCommands().size(), request.size() + 1);

        Client client;
        for (int round = 0; round < 3; ++round) {
            for (const char byte : request)
                client.send(QByteArray(1, byte));
            QCOMPARE(status(client.answers()), 200);
        }
        client.send(request + request.left(30));
        QCOMPARE(status(client.answers()), 200);
        client.send(request.mid(30));
        QCOMPARE(status(client.answers()), 200);
        QVERIFY(client.isOpen());
        host_.takeCommands();
    }
    void waitForWhatIsNeeded(bool isTaken) {
        static std::atomic<bool> complained{false};
        complained = false;
        QTcpServer taken;
        QVERIFY(!isTaken || taken.listen(QHostAddress::Any, port));
        auto none = isTaken ? nullptr : std::make_unique<NoDescriptors>();
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString&) { complained = true; });
        const LoneServer server(host_, {}, false);
        QTRY_VERIFY(complained);
        qInstallMessageHandler(before);
        none.reset();
        taken.close();
        QTRY_COMPARE(status(exchange(port, post("/x", "{}"), 100)), 404);
    }
    /// The statuses that answer @p bytes in two pieces, each cut tried, without repetitions.
    static QList<int> statusOfEveryCut(const QByteArray& bytes) {
        QList<int> all;
        Client other;
        for (int cut = 0; cut <= bytes.size(); ++cut) {
            Client client(bytes.left(cut));
            // The server has the first piece when it has answered something that was sent later.
            other.send(post("/x", {}, kAgain));
            if (status(other.answers()) != 404)
                return {};
            client.send(bytes.mid(cut));
            const int one = status(client.answers());
            if (!all.contains(one))
                all.append(one);
        }
        return all;
    }

 private slots:
    void initTestCase() {
        qputenv("ZEL_ROOT", root_.path().toLocal8Bit());
        port = freePort();
        qputenv("ZEL_REST_PORT", QByteArray::number(port));
    }
    void cleanup() {
        client_.reset();
        host_.takeCommands();
    }

    /// Answers that no route gives are like those of the routes, and close as they say.
    void unknownPathsAndMethodsAreAnsweredLikeOthers() {
        serve();
        const QByteArray get = "GET " + kRoute + " HTTP/1.1\r\n";
        for (const auto& [request, expected] : QList<QPair<QByteArray, int>>{
                 {post("/nowhere", "{}"), 404},
                 {post("/", "{}"), 404},
                 {"OPTIONS * HTTP/1.1\r\n\r\n", 404},
                 {get + "\r\n", 405},
                 {post('/' + kRoute + "/?x", {}), 200},
                 {post(kRoute, {}, "Connection: close, keep-alive\r\n"), 200},
                 {post("/nowhere", "{}", kAgain), 404},
                 {get + kAgain + "\r\n", 405}}) {
            Client client(request + request);  // the second one only where the first lets it
            const bool again = request.contains(kAgain);
            const QByteArray answers = client.answers(again ? 2 : 1);
            QCOMPARE(status(answers), expected);
            QCOMPARE(answers.count("Access-Control-Allow-Origin: *\r\n"), again ? 2 : 1);
            QCOMPARE(answers.count(again ? "Connection: Keep-Alive" : "Connection: Close"),
                     again ? 2 : 1);
            QCOMPARE(answers.count("Allow: POST\r\n"), expected == 405 ? again + 1 : 0);
            QCOMPARE(client.socket.waitForDisconnected(again ? 0 : 3000), !again);
            QCOMPARE(host_.takeCommands().size(), expected == 200 ? 1 : 0);
        }
    }

    /// Somebody who sends one long request after the other and reads each answer is not cut off for
    /// being quick.
    void longRequestsMayFollowAtOnce() {
        serve();
        Client client;
        for (int i = 0; i < 1000; ++i) {
            client.send(post(kRoute, QByteArray(40000, 'x'), kAgain));
            QCOMPARE(status(client.answers()), 200);
        }
    }

    /// A client that keeps asking and never reads is cut off instead of being answered into memory.
    void aClientThatNeverReadsIsCutOff() {
        serve();
        for (const QByteArray& request :
             {post("/cloud-service/rest-api/device-status.do", {}, kAgain),
              post("/nowhere", {}, kAgain), "GET " + kRoute + " HTTP/1.1\r\n" + kAgain + "\r\n"}) {
            Client client;
            client.socket.setReadBufferSize(1);
            for (int i = 0; i < 100000 && client.isOpen(); ++i) {
                client.socket.write(request);
                client.socket.waitForBytesWritten(1000);
            }
            QVERIFY2(!client.isOpen(), request.constData());
        }
    }

    void whoeverIsTooSlowIsSentAway_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("expected");  // 0: closed without a word
        QTest::newRow("nothing") << QByteArray() << 408;
        QTest::newRow("half a head") << QByteArray("POST /x HTTP/1.1\r\nHost:") << 408;
        QTest::newRow("half a body") << post("/x", "{}").chopped(1) << 408;
        QTest::newRow("idle") << post("/x", "{}", kAgain) << 404;
    }
    void whoeverIsTooSlowIsSentAway() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, expected);
        HttpGuard::Limits limits;
        limits.head = limits.body = limits.idle = limits.farewell = std::chrono::milliseconds(50);
        limits.watch = std::chrono::milliseconds(20);
        const LoneServer server(host_, limits);
        Client client(bytes);
        const QByteArray answer = client.answers(2);
        QCOMPARE(status(answer), expected);
        QCOMPARE(answer.count("HTTP/1.1 "), 1);
        QVERIFY(answer.contains("Access-Control-Allow-Origin: *\r\n"));
        QCOMPARE(answer.contains("Connection: Close\r\n"), expected == 408);
        QTRY_VERIFY(!client.isOpen());

        // One that neither reads nor closes is cut all the same.
        RawClient deaf;
        QVERIFY(deaf.connect() && deaf.send(bytes));
        QTRY_VERIFY(!deaf.send("x"));
    }

    void aNewConnectionTakesThePlaceOfTheOneIdleLongest() {
        HttpGuard::Limits limits;
        limits.connections = 4;
        const LoneServer server(host_, limits);
        Client half("POST /x HTTP/1.1\r\n");
        std::unique_ptr<Client> clients[4];
        for (auto& client : clients) {
            client = std::make_unique<Client>(post(kRoute, {}, kAgain));
            QCOMPARE(status(client->answers()), 200);
        }
        QTRY_VERIFY(!clients[0]->isOpen());
        clients[1]->send(post(kRoute, {}, kAgain));
        QCOMPARE(status(clients[1]->answers()), 200);
        QCOMPARE(status(Client(post(kRoute, {})).answers()), 200);
        QTRY_VERIFY(!clients[2]->isOpen());
        QVERIFY(half.isOpen() && clients[1]->isOpen() && clients[3]->isOpen());

        // When everybody is in the middle of a request, too.
        std::vector<std::unique_ptr<Client>> halves;
        for (int i = 0; i < 20; ++i)
            halves.push_back(std::make_unique<Client>("POST /x HTTP/1.1\r\n"));
        QCOMPARE(status(Client(post(kRoute, {})).answers()), 200);
    }

    /// Without descriptors nobody is accepted and nothing spins; with them it goes on.
    void descriptorsMayRunOut() {
        static std::atomic<bool> complained{false};
        serve();
        RawClient client;
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString&) { complained = true; });
        {
            const NoDescriptors none;
            QVERIFY(client.connect());
            QTRY_VERIFY(complained);
            const qint64 begin = cpuTime();
            QTest::qWait(400);
            QVERIFY(cpuTime() - begin < 100);
        }
        qInstallMessageHandler(before);
        client.send(post(kRoute, {}));
        QCOMPARE(client.receive(12), QByteArray("HTTP/1.1 200"));
    }

    /// Nothing that is not a request gets an answer with a text in it, and the next client is
    /// served as ever.
    void brokenRequestsAreRefusedWithoutAText_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("expected");
        const QByteArray line = "POST /x HTTP/1.1\r\n";
        const QByteArray chunked = line + "Transfer-Encoding: chunked\r\n\r\n";
        for (const char* const length : {"-1", "+2", "", "2 2", "0x2", "2\r\nContent-Length: 2"})
            QTest::addRow("length %s", QByteArray(length).toPercentEncoding().data())
                << line + "Content-Length: " + length + "\r\n\r\n{}" << 400;
        for (const char* const length : {"2097153", "99999999999999999999999"})
            QTest::addRow("length %s", length)
                << line + "Content-Length: " + length + "\r\n\r\n{}" << 413;
        for (const char* const header :
             {"Host", ": x", "Host : x", " folded: x", "A: \x01", "A: x\r", "A: x\nB: y",
              "Content-Length: 2\r\nTransfer-Encoding: chunked"})
            QTest::addRow("%s", QByteArray(header).toPercentEncoding().data())
                << line + header + "\r\n\r\n"
                << 400;
        QTest::newRow("coding") << line + "Transfer-Encoding: gzip, chunked\r\n\r\n" << 501;
        for (const char* const request :
             {"NOTHING / HTTP/1.1", "POST /x", "POST  HTTP/1.1", "POST /x HTTP/2.0",
              "POST /a b HTTP/1.1", "POST /x HTTP/1.0\r\nTransfer-Encoding: chunked"})
            QTest::addRow("%s", QByteArray(request).toPercentEncoding().data())
                << request + QByteArray("\r\n\r\n") << 400;
        QTest::newRow("empty lines") << QByteArray("\r\n\r\n\r\n") + line << 400;
        for (const char* const chunks : {"-5\r\n", "\r\n", "5;x\r\n", "2\n{}", "2\r\n{}0\r\n\r\n",
                                         "0\r\nA: x\r\n", "00000000000000000"})
            QTest::addRow("chunks %s", QByteArray(chunks).toPercentEncoding().data())
                << chunked + chunks << 400;
        QTest::newRow("chunk size huge") << chunked + "2\r\n{}\r\n7fffffffffffffff\r\n" << 413;
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
        for (int cut = 0; cut <= bytes.size(); ++cut) {
            RequestReader reader;
            for (const QByteArray& piece : {bytes.left(cut), bytes.mid(cut)})
                reader.take(piece.constData(), static_cast<std::size_t>(piece.size()));
            // Which methods there are is for the library to say.
            const bool isRefused = reader.state() == RequestReader::State::Refused;
            QCOMPARE(isRefused ? reader.refusal() : 400, expected);
        }
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

    /// In whatever pieces a request comes, it is the same request, and the connection goes on.
    void aRequestMayBeCutAnywhere() {
        serve();
        for (const QByteArray& request :
             {"POST " + kRoute + " HTTP/1.1\r\n" + kAgain + "\r\n",
              "\r\n" + post(kRoute, R"({"a":"b"})", kAgain),
              "POST " + kRoute + "?x=y HTTP/1.1\r\nTransfer-Encoding: chunked\r\n" + kAgain +
                  "\r\n5\r\nhello\r\n01\r\n{\r\n0\r\n\r\n"})
            cutAnywhere(request);
    }

    /// What is not given would go to the controller as it is not known yet.
    void settingsAreChangedWhenTheyAreKnown() {
        serve();
        const QByteArray order = post("/cloud-service/rest-api/device-set.do",
                                      R"({"DeviceSettings":{"DoorOpenDuration":5}})");
        host_.arrived = false;
        QVERIFY(exchange(port, order).contains("\"9999\""));
        QCOMPARE(host_.takeCommands().size(), 0);
        host_.arrived = true;
        QVERIFY(exchange(port, order).contains("\"1000\""));
        QCOMPARE(host_.takeCommands().size(), 1);
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
                    }) <= HttpGuard::Limits().connections);
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

    /// The port, and descriptors.
    void whatTheStartNeedsIsWaitedFor() {
        for (const bool isTaken : {true, false})
            waitForWhatIsNeeded(isTaken);
    }
};

QTEST_GUILESS_MAIN(CloudRestServerTest)
#include "cloud_rest_server_test.moc"
