#include <QtTest>
#include <memory>

#include "cloud/network_helper.h"
#include "cloud/rest_client.h"
#include "cloud_test_support.h"
#include "link/device_message.h"
#include "link/record_values.h"

class CloudRestClientTest : public QObject {
    Q_OBJECT

 private:
    std::unique_ptr<FakeHost> host_;
    std::unique_ptr<FakeService> service_;
    std::unique_ptr<RestClass> client_;

    /// The client's settings, as @p change leaves them.
    template <typename Change>
    void set(Change change) {
        _gui_menu_ menu = host_->settings();
        change(menu);
        host_->setSettings(menu);
    }
    void send(int command, const QVariant& data = {}) {
        QCOMPARE(client_->SendCommand(command, data), 0);
    }
    /// Sends it, and waits until it is done.
    void complete(int command, const QVariant& data = {}) {
        const int before = host_->completed.size();
        send(command, data);
        QTRY_COMPARE(host_->completed.size(), before + 1);
    }
    ProcIDX lastCompleted() const { return host_->completed.last().value<ProcIDX>(); }

 private slots:
    void init() {
        host_ = std::make_unique<FakeHost>();
        service_ = std::make_unique<FakeService>();
        client_ = std::make_unique<RestClass>(*host_, nullptr);
        host_->setSettings(service_->settings());
        set([](_gui_menu_& menu) {
            menu.setup.deviceNumber = 4711;
            setFieldText(menu.serial, QStringLiteral("SERIAL12345"));
            setFieldText(menu.customerId, QStringLiteral("cust\r\nX: y"));
        });
    }
    void cleanup() { client_.reset(); }

    void connectingExchangesTokensAndSetsTheClock() {
        service_->answerWith(
            R"({"resultCode":"1000","access_token":"tok\r\nen","system_time":"2031-12-24 23:59:58"})");
        QCOMPARE(client_->SendCommand(RestClass::kConnect, {}), 0);
        QCOMPARE(client_->SendCommand(RestClass::kConnect, {}), 2);
        QCOMPARE(client_->SendCommand(RestClass::kConnectionCheck, {}, 5), 6);
        QTRY_VERIFY(host_->link);

        const FakeService::Request request = service_->requests.first();
        QCOMPARE(request.header("reader_id"), QByteArray("4711"));
        QCOMPARE(request.header("serial"), QByteArray("SERIAL12345"));
        QCOMPARE(request.header("cust_id"), QByteArray("custX: y"));
        const QByteArray token = request.header("access_token");
        QVERIFY(!QUuid(QString::fromLatin1(token)).isNull() && token.startsWith('{'));

        const auto commands = host_->takeCommands();
        QVERIFY(commands.size() == 1 && commands[0].first == 18);
        const auto time = commands[0].second.value<FR01_Parameter>();
        QCOMPARE(time.date + time.time, QStringLiteral("2031-12-2423:59:58"));
        QVERIFY(lastCompleted().resultCode == 1000 && lastCompleted().extra == 0);

        // Later requests carry the service's token.
        QCOMPARE(client_->SendCommand(RestClass::kConnectionCheck, {}, 5), 0);
        QTRY_COMPARE(host_->completed.size(), 2);
        QCOMPARE(service_->requests.last().header("access_token"), QByteArray("token"));
        QCOMPARE(lastCompleted().extra, 5);
    }

    /// Eight headers in their order, also those that have nothing to say.
    void everyRequestCarriesAllHeaders() {
        set([](_gui_menu_& menu) { menu.customerId[0] = '\0'; });
        send(RestClass::kConnectionCheck);
        client_->runFR51({});
        QTRY_COMPARE(service_->requests.size(), 2);
        const QRegularExpression all(
            QStringLiteral("\r\nContent-Type: application/json; charset=utf-8\r\n.*"
                           "Packet-Version: 1\\.0\r\n.*EncoderKey-Version: 0\r\n.*"
                           "reader_id: 4711\r\n.*serial: SERIAL12345\r\n.*cust_id: ?\r\n.*"
                           "reader_ipport: .*\r\naccess_token:"),
            QRegularExpression::DotMatchesEverythingOption);
        for (const FakeService::Request& request : service_->requests) {
            QVERIFY2(QString::fromLatin1(request.head).contains(all), request.head.constData());
            QCOMPARE(request.header("Accept-Encoding"), QByteArray("identity"));
        }
    }

    /// Another address is another service: it gets nothing of the one before, which can no longer
    /// say anything either.
    void anotherServiceStartsAnew() {
        const QByteArray good(
            R"({"resultCode":"1000","access_token":"old","system_time":"2031-12-24 23:59:58"})");
        service_->answerWith(good);
        send(RestClass::kConnect);
        QTRY_VERIFY(host_->link);
        host_->takeCommands();
        service_->answer = nullptr;
        send(RestClass::kConnect);
        QTRY_COMPARE(service_->requests.size(), 2);

        FakeService other;
        host_->setSettings(other.settings());
        service_->last->write(FakeService::json(good));
        QTRY_COMPARE(host_->completed.size(), 2);
        QVERIFY(!host_->link && host_->takeCommands().isEmpty());
        send(RestClass::kConnectionCheck);
        QTRY_COMPARE(other.requests.size(), 1);
        QCOMPARE(other.requests[0].header("access_token"), QByteArray());
        // What is under way ends with the address.
        host_->setSettings(service_->settings());
        client_->takeSettings();
        QCOMPARE(host_->completed.size(), 3);
        send(RestClass::kConnectionCheck);
    }

    void aFaultIsLoggedOnce() {
        static QStringList lines;
        lines.clear();
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { lines << line; });
        service_->closeAfterAnswer = true;
        const QByteArray refusal = FakeService::json(R"({"resultCode":"9999"})");
        const QByteArray consent = FakeService::json(R"({"resultCode":"1000"})");
        for (const QByteArray& answer : {QByteArray(), QByteArray(), QByteArray(), refusal, refusal,
                                         refusal, consent, refusal}) {
            service_->says(answer);
            complete(RestClass::kConnect);
        }
        qInstallMessageHandler(before);
        QCOMPARE(lines.filter(QStringLiteral("connect.do failed: ")).size(), 3);
        QCOMPARE(lines.filter(QStringLiteral("answered 9999")).size(), 2);
    }

    void aShortSerialIsReplacedByTheHardwareAddress() {
        set([](_gui_menu_& menu) { setFieldText(menu.serial, QStringLiteral("SERIAL1234")); });
        send(RestClass::kConnectionCheck);
        QTRY_COMPARE(service_->requests.size(), 1);
        QCOMPARE(service_->requests[0].header("serial"),
                 "KD_5500_" + NetworkHelper::getMacAddress(QStringLiteral("eth0")).toLatin1());
    }

    /// The link follows every kind of answer, and the command is free again after each.
    void answersMoveTheLink() {
        const auto code = [](const QByteArray& value) {
            return FakeService::json("{\"resultCode\":" + value + "}");
        };
        const QByteArray garbage("\x00\xff garbage \r\n\r\n", 14);
        const QByteArray packed = qCompress(R"({"resultCode":"1000"})").mid(4);
        const int connects = RestClass::kConnect;
        const int check = RestClass::kConnectionCheck;
        const int log = RestClass::kUserInOutLog;
        const struct {
            int command;
            QByteArray answer;
            bool up;
        } rows[] = {{connects, code("\"2003\""), true},
                    {connects, code("1000"), true},
                    {connects, code("\"2000\""), false},
                    {connects, FakeService::json("[1,2"), false},
                    {connects, garbage, false},
                    {connects,
                     "HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\nContent-Length: " +
                         QByteArray::number(packed.size()) + "\r\n\r\n" + packed,
                     false},
                    {connects, "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(100000000, ' '), false},
                    {connects, FakeService::json(QByteArray(300000, ' ')), false},
                    {check, code("\"1000\""), true},
                    {check, code("2003"), true},
                    {check, code("9999"), false},
                    {check, "HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n", false},
                    {log, code("\"9999\""), true},
                    {log, garbage, false}};
        for (const auto& row : rows) {
            cleanup();
            init();
            service_->closeAfterAnswer = true;
            service_->says(row.answer);
            host_->link = true;
            complete(row.command);
            QVERIFY2(host_->link == row.up, row.answer.left(60).constData());
            QVERIFY2(service_->written < 20000000, "read although it is too much");
            complete(row.command);
        }
    }

    void faultsAndDeletedUsersAreReported() {
        service_->answerWith(R"({"resultCode":"1000"})");
        const auto sent = [this](const char* part) {
            const auto body = QJsonDocument::fromJson(service_->requests.last().body);
            return body.toJson(QJsonDocument::Compact).contains(part);
        };
        host_->selfCheck = SelfCheckFault::kTamper | SelfCheckFault::kCamera;
        complete(RestClass::kConnectionCheck);
        QVERIFY(sent(R"("deviceInfo":{"checkCamera":"BAD","checkCard":"GOOD",)"
                     R"("checkMemory":"GOOD","coverOpen":"OPEN"})"));
        const FR36_Parameter deleted{QStringLiteral("5"), QStringLiteral("A1")};
        complete(RestClass::kUserDeleted, QVariant::fromValue(deleted));
        QVERIFY(service_->requests.last().line.contains("/user-deleted.do "));
        QVERIFY(sent(R"("userInfo":{"cardInfo":{"cardNo":"A1"},"deleteType":"5"})"));
        QCOMPARE(lastCompleted().data.value<FR36_Parameter>().cardNo, deleted.cardNo);
    }

    void aSilentServiceIsGivenUp() {
        client_->setTransferTimeout(150);
        host_->link = true;
        complete(RestClass::kConnectionCheck);
        QVERIFY(!host_->link);
        QCOMPARE(lastCompleted().resultCode, 0);
        send(RestClass::kConnectionCheck);
    }

    void addressesAreTheKernels() {
        const QString loopback = QStringLiteral("lo");
        QCOMPARE(NetworkHelper::getIPAddress(loopback), QStringLiteral("127.0.0.1"));
        QCOMPARE(NetworkHelper::getMask(loopback), QStringLiteral("255.0.0.0"));
        QCOMPARE(NetworkHelper::getMacAddress(loopback), QStringLiteral("000000000000"));
        QCOMPARE(NetworkHelper::getGateway(loopback), QString());
        QCOMPARE(NetworkHelper::getIPAddress(QStringLiteral("no such interface")), QString());
    }

    void numbersWithoutARequestAreFreeAgain() {
        QCOMPARE(client_->SendCommand(99, {}), 0);
        QCoreApplication::processEvents();
        QCOMPARE(client_->SendCommand(RestClass::kConnectionCheck, {}, 1), 0);
        QTRY_COMPARE(service_->requests.size(), 1);
        QVERIFY(host_->completed.isEmpty());
    }

    /// Nothing of a finished request stays, and ending with requests under way is silent.
    void requestsLeaveNothingBehind() {
        service_->answerWith(R"({"resultCode":"1000"})");
        for (int i = 0; i < 20; ++i)
            complete(RestClass::kConnectionCheck);
        QTRY_VERIFY(client_->children().isEmpty());
        service_->answer = nullptr;
        send(RestClass::kConnect);
        client_->runFR51({});
        QTRY_COMPARE(service_->requests.size(), 22);
        client_.reset();
        QCoreApplication::processEvents();
        QCOMPARE(host_->completed.size(), 20);
    }
};

QTEST_GUILESS_MAIN(CloudRestClientTest)
#include "cloud_rest_client_test.moc"
