#include <QTcpSocket>
#include <QtTest>

#include "sim/service/service_sim.h"

namespace {

QByteArray call(const QByteArray& name, const QByteArray& body, const QByteArray& token = {}) {
    return "POST /cloud-service/rest-api/" + name + ".do HTTP/1.1\r\nACCESS_TOKEN: " + token +
           "\r\ncontent-length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

}  // namespace

class ServiceSimTest : public QObject {
    Q_OBJECT

 private:
    ServiceSim service_{0, 0, TerminalAddress{QStringLiteral("::1"), 1}};

    /// What answers @p bytes on a connection of their own, of @p count answers the last; with
    /// @p rest behind the one before.
    QJsonObject answerTo(const QByteArray& bytes, int count = 1, const QByteArray& rest = {}) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), service_.port());
        QByteArray received;
        const auto has = [&](int answers) {
            return QTest::qWaitFor([&] {
                received += socket.readAll();
                // An answer ends with the brace of its object.
                return received.count("}\n") == answers ||
                       socket.state() == QAbstractSocket::UnconnectedState;
            });
        };
        socket.write(bytes);
        const bool begun = count == 1 || has(count - 1);
        socket.write(rest);
        if (!begun || !has(count))
            return {{QStringLiteral("resultCode"), QStringLiteral("silence")}};
        return QJsonDocument::fromJson(received.mid(received.lastIndexOf("\r\n\r\n") + 4)).object();
    }
    QString codeOf(const QByteArray& bytes, int count = 1, const QByteArray& rest = {}) {
        return answerTo(bytes, count, rest).value(QStringLiteral("resultCode")).toString();
    }

 private slots:
    void onlyTheRegisteredAreServed() {
        const QString served = QStringLiteral("1000");
        const QString refused = QStringLiteral("9999");
        const QJsonObject answer = answerTo(call("connect", R"({"access_token":"{x}"})"));
        const QByteArray token = answer.value(QStringLiteral("access_token")).toString().toUtf8();
        const QByteArray request = call("visitor-call", R"({"inoutInfo":{}})", token);
        QCOMPARE(codeOf(request + request + request.left(30), 3, request.mid(30)), served);
        QCOMPARE(codeOf(call("visitor-call", R"({"inoutInfo":{}})", "other")), refused);
        QCOMPARE(codeOf(call("user-enroll", R"({"inoutInfo":{}})", token)), refused);
        // Deep enough to exhaust a recursion that nothing bounds.
        QCOMPARE(codeOf(call("connect", QByteArray(1000000, '['))), refused);
    }

    void garbageEndsTheConnection() {
        const QByteArray head = "POST /cloud-service/rest-api/connect.do HTTP/1.1\r\n";
        for (const QByteArray& bytes :
             {QByteArray(20000, 'x'), QByteArray("GET / HTTP/1.1\r\nno colon\r\n\r\n"),
              head + "Content-Length: -1\r\n\r\n",
              head + "Content-Length: 99999999999999999999\r\n\r\n",
              head + "Content-Length: 9000000\r\n\r\n",
              head + "Transfer-Encoding: chunked\r\n\r\n1\r\n{\r\n"})
            QCOMPARE(codeOf(bytes), QString());
    }
};

QTEST_GUILESS_MAIN(ServiceSimTest)
#include "service_sim_test.moc"
