#include <netinet/in.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <QtTest>
#include <atomic>
#include <ctime>
#include <deque>
#include <memory>
#include <optional>
#include <thread>

#include "cloud/http_guard.h"
#include "cloud/rest_client.h"
#include "cloud/rest_server.h"
#include "cloud_test_support.h"

namespace {

quint16 port = 0;
/// Milliseconds for an orderly end: one second, and as much again for a busy machine.
constexpr int kOrderly = 2000;

QByteArray post(const QByteArray& path, const QByteArray& body = {}, const QByteArray& more = {}) {
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
        const auto heads = [&all] { return all.count("\r\n\r\n"); };
        while (heads() < count && (socket.bytesAvailable() > 0 || socket.waitForReadyRead(3000)))
            all += socket.readAll();
        return all;
    }
    bool isOpen() const { return socket.state() == QAbstractSocket::ConnectedState; }

    QTcpSocket socket;
};

/// The whole answer, behind which the server closes.
QByteArray answerTo(const QByteArray& bytes) {
    Client client(bytes);
    client.socket.waitForDisconnected(3000);
    return client.socket.readAll();
}

int ask(const QByteArray& bytes) {
    return status(answerTo(bytes));
}

/// The server alone, with limits of its own.
class LoneServer {
 public:
    LoneServer(FakeHost& host, const HttpGuard::Limits& limits, bool isUp = true)
        : server_({Pistache::Ipv4::loopback(), port}, host) {
        server_.init(1);
        server_.setLimits(limits);
        thread_ = std::thread([this] { server_.start(); });
        while (isUp && ask(post("/")) != 404)
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

/// Whether anything is complained of, which is not printed then.
class Complaints {
 public:
    Complaints() { any = false; }
    ~Complaints() { qInstallMessageHandler(before_); }

    static inline std::atomic<bool> any{false};

 private:
    const QtMessageHandler before_ = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString&) { any = true; });
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

}  // namespace

class CloudRestServerTest : public QObject {
    Q_OBJECT

 private:
    TestRoot root_;
    FakeHost host_;
    std::unique_ptr<RestClass> client_;

    void serve() {
        client_ = std::make_unique<RestClass>(host_, nullptr);
        client_->start();
        QTRY_COMPARE(ask(post("/")), 404);
    }

 private slots:
    void initTestCase() {
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

    void whoeverIsTooSlowIsSentAway() {
        HttpGuard::Limits limits;
        limits.head = limits.body = limits.idle = limits.farewell = std::chrono::milliseconds(50);
        limits.watch = std::chrono::milliseconds(20);
        const LoneServer server(host_, limits);
        for (const QByteArray& bytes : {QByteArray(), QByteArray("POST /x HTTP/1.1\r\nHost:"),
                                        post("/x", "{}").chopped(1), post("/x", "{}", kAgain)}) {
            const bool idle = bytes.contains(kAgain);
            Client client(bytes);
            const QByteArray answer = client.answers(2);
            QCOMPARE(status(answer), idle ? 404 : 408);
            QCOMPARE(answer.count("HTTP/1.1 "), 1);
            QVERIFY(answer.contains("Access-Control-Allow-Origin: *\r\n"));
            QCOMPARE(answer.contains("Connection: Close\r\n"), !idle);
            QTRY_VERIFY(!client.isOpen());

            // One that neither reads nor closes is cut all the same.
            Client deaf;
            deaf.socket.setReadBufferSize(1);
            deaf.send(bytes);
            QTRY_VERIFY((deaf.send("x"), !deaf.isOpen()));
        }
    }

    void aNewConnectionTakesThePlaceOfTheOneIdleLongest() {
        HttpGuard::Limits limits;
        limits.connections = 4;
        const LoneServer server(host_, limits);
        Client half("POST /x HTTP/1.1\r\n");
        std::deque<Client> clients;
        for (int i = 0; i < 4; ++i)
            QCOMPARE(status(clients.emplace_back(post(kRoute, {}, kAgain)).answers()), 200);
        QTRY_VERIFY(!clients[0].isOpen());
        clients[1].send(post(kRoute, {}, kAgain));
        QCOMPARE(status(clients[1].answers()), 200);
        QCOMPARE(ask(post(kRoute)), 200);
        QTRY_VERIFY(!clients[2].isOpen());
        QVERIFY(half.isOpen() && clients[1].isOpen() && clients[3].isOpen());

        // When everybody is in the middle of a request, too.
        for (int i = 0; i < 20; ++i)
            clients.emplace_back("POST /x HTTP/1.1\r\n");
        QCOMPARE(ask(post(kRoute)), 200);
    }

    /// Without descriptors nobody is accepted and nothing spins; with them it goes on.
    void descriptorsMayRunOut() {
        serve();
        const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_in address{AF_INET, htons(port), {htonl(INADDR_LOOPBACK)}, {}};
        {
            const NoDescriptors none;
            const Complaints complaints;
            QCOMPARE(
                ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address),
                0);
            QTRY_VERIFY(complaints.any);
            const std::clock_t begin = std::clock();
            QTest::qWait(400);
            QVERIFY(std::clock() - begin < CLOCKS_PER_SEC / 10);
        }
        QTcpSocket client;
        QVERIFY(client.setSocketDescriptor(descriptor));
        client.write(post(kRoute));
        QTRY_VERIFY(client.bytesAvailable() > 12);
        QCOMPARE(status(client.readAll()), 200);
    }

    /// Nothing that is not a request gets an answer with a text in it, and the next client is
    /// served as ever.
    void brokenRequestsAreRefusedWithoutAText() {
        const QByteArray line = "POST /x HTTP/1.1\r\n";
        const QByteArray chunked = line + "Transfer-Encoding: chunked\r\n\r\n";
        QList<QPair<QByteArray, int>> rows{
            {"\r\n\r\n\r\n" + line, 400},
            {line + "Transfer-Encoding: gzip, chunked\r\n\r\n", 501},
            {chunked + "2\r\n{}\r\n7fffffffffffffff\r\n", 413},
            {line + "A: " + QByteArray(20000, 'a'), 431},
            {"POST /" + QByteArray(20000, '/'), 431},
            {"POST /" + QByteArray(2000, '/') + " HTTP/1.1\r\n\r\n", 414}};
        for (const char* const length : {"-1", "+2", "", "2 2", "0x2", "2\r\nContent-Length: 2"})
            rows.append({line + "Content-Length: " + length + "\r\n\r\n{}", 400});
        for (const char* const length : {"2097153", "99999999999999999999999"})
            rows.append({line + "Content-Length: " + length + "\r\n\r\n{}", 413});
        for (const char* const header :
             {"Host", ": x", "Host : x", " folded: x", "A: \x01", "A: x\r", "A: x\nB: y",
              "Content-Length: 2\r\nTransfer-Encoding: chunked"})
            rows.append({line + header + "\r\n\r\n", 400});
        for (const char* const request :
             {"NOTHING / HTTP/1.1", "POST /x", "POST  HTTP/1.1", "POST /x HTTP/2.0",
              "POST /a b HTTP/1.1", "POST /x HTTP/1.0\r\nTransfer-Encoding: chunked"})
            rows.append({request + QByteArray("\r\n\r\n"), 400});
        for (const char* const chunks : {"-5\r\n", "\r\n", "5;x\r\n", "2\n{}", "2\r\n{}0\r\n\r\n",
                                         "0\r\nA: x\r\n", "00000000000000000"})
            rows.append({chunked + chunks, 400});
        serve();
        for (const auto& [bytes, expected] : qAsConst(rows)) {
            const QByteArray answer = answerTo(bytes);
            QVERIFY2(
                status(answer) == expected &&
                    answer.contains("Access-Control-Allow-Origin: *\r\n") &&
                    answer.endsWith("Content-Length: 0\r\n\r\n"),
                qPrintable(QString::fromLatin1((bytes.left(80) + answer).toPercentEncoding())));
            const auto size = static_cast<std::size_t>(bytes.size());
            for (std::size_t cut = 0; cut <= size; ++cut) {
                RequestReader reader;
                reader.take(bytes.constData(), cut);
                reader.take(bytes.constData() + cut, size - cut);
                // Which methods there are is for the library to say.
                const bool isRefused = reader.state() == RequestReader::State::Refused;
                QCOMPARE(isRefused ? reader.refusal() : 400, expected);
            }
            const QByteArray next = answerTo(post("/x", "{}"));
            QCOMPARE(status(next), 404);
            QVERIFY(next.contains("Access-Control-Allow-Origin: *\r\n"));
        }
    }

    void bodiesUpToTwoMebibytesPass() {
        serve();
        const int most = static_cast<int>(HttpGuard::kMaxBody);
        const QByteArray headers = "X-Padding: " + QByteArray(8000, 'x') + "\r\n";
        QCOMPARE(ask(post("/x", QByteArray(most, 'a'), headers)), 404);
        QCOMPARE(ask(post("/x", QByteArray(most + 1, 'a'))), 413);

        QByteArray chunked = "POST /x HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n";
        for (int i = 0; i < 32; ++i)
            chunked += "10000\r\n" + QByteArray(0x10000, 'a') + "\r\n";
        QCOMPARE(ask(chunked + "0\r\n\r\n"), 404);
        QCOMPARE(ask(chunked + "1\r\na\r\n0\r\n\r\n"), 413);
    }

    /// In whatever pieces a request comes, it is the same request, and the connection goes on.
    void aRequestMayBeCutAnywhere() {
        serve();
        for (const QByteArray& request :
             {"POST " + kRoute + " HTTP/1.1\r\n" + kAgain + "\r\n",
              "\r\n" + post(kRoute, R"({"a":"b"})", kAgain),
              "POST " + kRoute + "?x=y HTTP/1.1\r\nTransfer-Encoding: chunked\r\n" + kAgain +
                  "\r\n5\r\nhello\r\n01\r\n{\r\n0\r\n\r\n"}) {
            Client other;
            for (int cut = 0; cut <= request.size(); ++cut) {
                Client client(request.left(cut));
                // The server has the first piece when it has answered what was sent later.
                other.send(post("/x", {}, kAgain));
                QCOMPARE(status(other.answers()), 404);
                client.send(request.mid(cut));
                QCOMPARE(status(client.answers()), 200);
            }
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
    }

    /// What is not given would go to the controller as it is not known yet.
    void settingsAreChangedWhenTheyAreKnown() {
        serve();
        const QByteArray order = post("/cloud-service/rest-api/device-set.do",
                                      R"({"DeviceSettings":{"DoorOpenDuration":5}})");
        host_.arrived = false;
        QVERIFY(answerTo(order).contains("\"9999\""));
        QCOMPARE(host_.takeCommands().size(), 0);
        host_.arrived = true;
        QVERIFY(answerTo(order).contains("\"1000\""));
        QCOMPARE(host_.takeCommands().size(), 1);
        // And an archive is fetched when it is known from whom.
        host_.setSettings({});
        const QByteArray archive =
            R"({"firmwareType":"1","version":"1.0","firmFile":"/fw.tar.bz2"})";
        QVERIFY(answerTo(post("/cloud-service/rest-api/device-fw-update.do", archive))
                    .contains("\"9999\""));
        QCOMPARE(host_.takeCommands().size(), 0);
    }

    /// What the GUI thread has not carried out yet is limited; here it does nothing between orders.
    void ordersWaitForTheGuiThread() {
        serve();
        const QByteArray order =
            post("/cloud-service/rest-api/system-set.do", R"({"system":"rebootDevice"})");
        const auto accepted = [&] { return answerTo(order).contains("\"1000\""); };
        int before = 0;
        while (before < 100 && accepted())
            ++before;
        QVERIFY(before > 1 && before < 100);
        QTRY_VERIFY(accepted());
    }

    /// Half requests, floods and clients that never read hold no more than their share.
    void floodsAreBounded() {
        serve();
        std::deque<Client> clients;
        const QByteArray half =
            "POST /x HTTP/1.1\r\nContent-Length: 2000000\r\n\r\n" + QByteArray(1000000, 'a');
        for (int i = 0; i < 300; ++i)
            clients.emplace_back(i < 40 ? half : QByteArray());
        QTRY_VERIFY(std::count_if(clients.begin(), clients.end(), [](const Client& client) {
                        return client.isOpen();
                    }) <= HttpGuard::Limits().connections);
        clients.clear();
        QTRY_COMPARE(ask(post("/x", "{}")), 404);
    }

    void stoppingIsOrderlyAtAnyMoment() {
        for (int round = 0; round < 60; ++round) {
            auto client = std::make_unique<RestClass>(host_, nullptr);
            client->start();
            QThread::usleep(static_cast<unsigned long>(round % 20) * 150);
            std::optional<Client> idle;
            if (round % 3 != 0)
                idle.emplace(round % 3 == 1 ? post("/x") : QByteArray("POST /x HT"));
            QElapsedTimer time;
            time.start();
            client.reset();
            QVERIFY2(time.elapsed() < kOrderly, qPrintable(QString::number(time.elapsed())));
        }
    }

    /// Each of these requests waits half a second for the table's writer.
    void stoppingDoesNotWaitForWhatIsQueued() {
        serve();
        root_.clear("/mnt/data/db_user2");
        sqlite3* writer = nullptr;
        QCOMPARE(sqlite3_open(qPrintable(root_.path("/mnt/data/db_user2/DB_userT.bin")), &writer),
                 SQLITE_OK);
        QCOMPARE(sqlite3_exec(writer, "CREATE TABLE USER_T (N, ID, MARK); BEGIN EXCLUSIVE", nullptr,
                              nullptr, nullptr),
                 SQLITE_OK);
        std::deque<Client> clients;
        for (int i = 0; i < 8; ++i)
            clients.emplace_back(post("/cloud-service/rest-api/user-list-get.do"));
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
        for (const bool isTaken : {true, false}) {
            QTcpServer taken;
            QVERIFY(!isTaken || taken.listen(QHostAddress::Any, port));
            auto none = isTaken ? nullptr : std::make_unique<NoDescriptors>();
            auto complaints = std::make_unique<Complaints>();
            const LoneServer server(host_, {}, false);
            QTRY_VERIFY(complaints->any);
            complaints.reset();
            none.reset();
            taken.close();
            QTRY_COMPARE(ask(post("/x")), 404);
        }
    }
};

QTEST_GUILESS_MAIN(CloudRestServerTest)
#include "cloud_rest_server_test.moc"
