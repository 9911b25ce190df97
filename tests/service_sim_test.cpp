#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QtTest>
#include <memory>

#include "sim/service/service_sim.h"

namespace {

/// The terminal's side of a call, byte by byte in the test's hand.
class Client {
 public:
    explicit Client(const ServiceSim& service) {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), service.port());
    }
    void send(const QByteArray& bytes) { socket.write(bytes); }
    const QByteArray& received() { return received_ += socket.readAll(); }
    bool closed() const { return socket.state() == QAbstractSocket::UnconnectedState; }

    QTcpSocket socket;

 private:
    QByteArray received_;
};

QByteArray call(const QByteArray& name, const QByteArray& body, const QByteArray& token = {}) {
    return "POST /cloud-service/rest-api/" + name + ".do HTTP/1.1\r\nACCESS_TOKEN: " + token +
           "\r\ncontent-length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QJsonObject bodyOf(const QByteArray& answer) {
    return QJsonDocument::fromJson(answer.mid(answer.indexOf("\r\n\r\n") + 4)).object();
}

}  // namespace

class ServiceSimTest : public QObject {
    Q_OBJECT

 private:
    std::unique_ptr<ServiceSim> service_;

    QString word(const char* line) { return service_->execute(QString::fromUtf8(line)); }
    /// The answer's body to a call on a connection of its own.
    QJsonObject answerTo(const QByteArray& bytes) {
        Client client(*service_);
        client.send(bytes);
        // An answer ends with the brace of its object.
        const auto ended = [&] { return client.received().endsWith("}\n") || client.closed(); };
        return QTest::qWaitFor(ended) ? bodyOf(client.received()) : QJsonObject();
    }
    QString codeOf(const QByteArray& bytes) {
        return answerTo(bytes).value(QStringLiteral("resultCode")).toString();
    }

 private slots:
    void init() {
        service_ = std::make_unique<ServiceSim>(0, 0, TerminalAddress{QStringLiteral("::1"), 1});
        QVERIFY(service_->listening());
    }

    void onlyTheRegisteredAreServed() {
        QSignalSpy called(service_.get(), &ServiceSim::called);
        const QJsonObject answer = answerTo(call("connect", R"({"access_token":"{x}"})"));
        QCOMPARE(answer.value(QStringLiteral("resultCode")).toString(), QStringLiteral("1000"));
        QVERIFY(QDateTime::fromString(answer.value(QStringLiteral("system_time")).toString(),
                                      QStringLiteral("yyyy-MM-dd hh:mm:ss"))
                    .isValid());
        const QByteArray token = answer.value(QStringLiteral("access_token")).toString().toUtf8();
        QCOMPARE(codeOf(call("connection-check", R"({"deviceInfo":{}})", token)),
                 QStringLiteral("1000"));
        QCOMPARE(codeOf(call("connection-check", R"({"deviceInfo":{}})", "other")),
                 QStringLiteral("9999"));
        QCOMPARE(codeOf(call("user-enroll", R"({"inoutInfo":{}})", token)), QStringLiteral("9999"));
        QCOMPARE(called.count(), 4);
        const QByteArray request = call("visitor-call", R"({"inoutInfo":{}})", token);
        Client client(*service_);
        client.send(request + request + request.left(30));
        QTRY_COMPARE(client.received().count("200 OK"), 2);
        client.send(request.mid(30));
        QTRY_COMPARE(client.received().count("200 OK"), 3);
    }

    void garbageIsHarmless() {
        const QByteArray head = "POST /cloud-service/rest-api/connect.do HTTP/1.1\r\n";
        const QByteArray broken[] = {
            QByteArray(20000, 'x'),
            "GET / HTTP/1.1\r\nno colon\r\n\r\n",
            head + "Content-Length: -1\r\n\r\n",
            head + "Content-Length: 99999999999999999999\r\n\r\n",
            head + "Content-Length: 9000000\r\n\r\n",
            head + "Transfer-Encoding: chunked\r\n\r\n1\r\n{\r\n",
        };
        for (const QByteArray& bytes : broken) {
            Client client(*service_);
            client.send(bytes);
            QTRY_VERIFY2(client.closed(), bytes.left(60).constData());
        }
        // Deep enough to exhaust a recursion that nothing bounds.
        QCOMPARE(codeOf(call("connect", QByteArray(1000000, '['))), QStringLiteral("9999"));
    }
};

QTEST_GUILESS_MAIN(ServiceSimTest)
#include "service_sim_test.moc"
