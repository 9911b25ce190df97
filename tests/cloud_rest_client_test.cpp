#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
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

    void answerWith(const QByteArray& json) {
        service_->answer = [json](const FakeService::Request&) { return FakeService::json(json); };
    }
    ProcIDX lastCompleted() const { return host_->completed.last().value<ProcIDX>(); }

 private slots:
    void init() {
        host_ = std::make_unique<FakeHost>();
        service_ = std::make_unique<FakeService>();
        client_ = std::make_unique<RestClass>(*host_, nullptr);
        _gui_menu_ menu{};
        menu.network.own.managerAddress[0] = 127;
        menu.network.own.managerAddress[3] = 1;
        menu.network.own.managerPort = service_->serverPort();
        menu.setup.deviceNumber = 4711;
        setFieldText(menu.serial, QStringLiteral("SERIAL12345"));
        setFieldText(menu.customerId, QStringLiteral("cust\r\nX: y"));
        host_->setSettings(menu);
    }
    void cleanup() {
        client_.reset();
        service_.reset();
        host_.reset();
    }

    void connectingExchangesTokensAndSetsTheClock() {
        answerWith(
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
        QCOMPARE(commands.size(), 1);
        QCOMPARE(commands[0].first, 18);
        const auto time = commands[0].second.value<FR01_Parameter>();
        QCOMPARE(time.date, QStringLiteral("2031-12-24"));
        QCOMPARE(time.time, QStringLiteral("23:59:58"));
        QCOMPARE(lastCompleted().resultCode, 1000);

        // Later requests carry the service's token.
        QCOMPARE(client_->SendCommand(RestClass::kConnectionCheck, {}, 5), 0);
        QTRY_COMPARE(host_->completed.size(), 2);
        QCOMPARE(service_->requests.last().header("access_token"), QByteArray("token"));
        QCOMPARE(lastCompleted().extra, 5);
    }

    void aShortSerialIsReplacedByTheHardwareAddress() {
        _gui_menu_ menu = host_->settings();
        setFieldText(menu.serial, QStringLiteral("SERIAL1234"));
        host_->setSettings(menu);
        client_->SendCommand(RestClass::kConnectionCheck, {});
        QTRY_COMPARE(service_->requests.size(), 1);
        QCOMPARE(service_->requests[0].header("serial"),
                 "KD_5500_" + NetworkHelper::getMacAddress(QStringLiteral("eth0")).toLatin1());
    }

    /// The link follows every kind of answer, and the command is free again after each.
    void answersMoveTheLink_data() {
        QTest::addColumn<int>("command");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("up");
        const QByteArray garbage("\x00\xff garbage \r\n\r\n", 14);
        QTest::newRow("connect 2003") << 0 << FakeService::json(R"({"resultCode":"2003"})") << true;
        QTest::newRow("connect number") << 0 << FakeService::json(R"({"resultCode":1000})") << true;
        QTest::newRow("connect 2000")
            << 0 << FakeService::json(R"({"resultCode":"2000"})") << false;
        QTest::newRow("connect no code") << 0 << FakeService::json("[1,2") << false;
        QTest::newRow("connect garbage") << 0 << garbage << false;
        QTest::newRow("connect huge") << 0 << FakeService::json(QByteArray(300000, ' ')) << false;
        QTest::newRow("check string") << 1 << FakeService::json(R"({"resultCode":"1000"})") << true;
        QTest::newRow("check number") << 1 << FakeService::json(R"({"resultCode":2003})") << true;
        QTest::newRow("check 9999") << 1 << FakeService::json(R"({"resultCode":9999})") << false;
        QTest::newRow("check 404")
            << 1 << QByteArray("HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n") << false;
        QTest::newRow("log 9999") << 3 << FakeService::json(R"({"resultCode":"9999"})") << true;
        QTest::newRow("log garbage") << 3 << garbage << false;
    }
    void answersMoveTheLink() {
        QFETCH(int, command);
        QFETCH(QByteArray, answer);
        QFETCH(bool, up);
        service_->closeAfterAnswer = true;
        service_->answer = [answer](const FakeService::Request&) { return answer; };
        host_->link = true;
        QCOMPARE(client_->SendCommand(command, {}), 0);
        QTRY_COMPARE(host_->completed.size(), 1);
        QCOMPARE(host_->link, up);
        QCOMPARE(client_->SendCommand(command, {}), 0);
        QTRY_COMPARE(host_->completed.size(), 2);
    }

    void faultsAndDeletedUsersAreReported() {
        answerWith(R"({"resultCode":"1000"})");
        const auto bodyOf = [this](const char* key) {
            const QByteArray body = service_->requests.last().body;
            return QJsonDocument::fromJson(body).object().value(QLatin1String(key)).toObject();
        };
        host_->selfCheck = SelfCheckFault::kTamper | SelfCheckFault::kCamera;
        client_->SendCommand(RestClass::kConnectionCheck, {});
        QTRY_COMPARE(host_->completed.size(), 1);
        QCOMPARE(bodyOf("deviceInfo"),
                 (QJsonObject{{QStringLiteral("checkCamera"), QStringLiteral("BAD")},
                              {QStringLiteral("checkCard"), QStringLiteral("GOOD")},
                              {QStringLiteral("coverOpen"), QStringLiteral("OPEN")},
                              {QStringLiteral("checkMemory"), QStringLiteral("GOOD")}}));
        const FR36_Parameter deleted{QStringLiteral("5"), QStringLiteral("A1")};
        client_->SendCommand(RestClass::kUserDeleted, QVariant::fromValue(deleted));
        QTRY_COMPARE(host_->completed.size(), 2);
        QVERIFY(service_->requests.last().line.contains("/user-deleted.do "));
        const QJsonObject card{{QStringLiteral("cardNo"), deleted.cardNo}};
        QCOMPARE(bodyOf("userInfo"),
                 (QJsonObject{{QStringLiteral("deleteType"), deleted.deleteType},
                              {QStringLiteral("cardInfo"), card}}));
        QCOMPARE(lastCompleted().data.value<FR36_Parameter>().cardNo, deleted.cardNo);
    }

    void aSilentServiceIsGivenUp() {
        client_->setTransferTimeout(150);
        host_->link = true;
        client_->SendCommand(RestClass::kConnectionCheck, {});
        QTRY_COMPARE_WITH_TIMEOUT(host_->completed.size(), 1, 2000);
        QVERIFY(!host_->link);
        QCOMPARE(lastCompleted().resultCode, 0);
        QCOMPARE(client_->SendCommand(RestClass::kConnectionCheck, {}), 0);
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
        answerWith(R"({"resultCode":"1000"})");
        for (int i = 1; i <= 20; ++i) {
            client_->SendCommand(RestClass::kConnectionCheck, {});
            QTRY_COMPARE(host_->completed.size(), i);
        }
        QTRY_VERIFY(client_->children().isEmpty());
        service_->answer = nullptr;
        client_->SendCommand(RestClass::kConnect, {});
        client_->runFR51({});
        QTRY_COMPARE(service_->requests.size(), 22);
        client_.reset();
        QCoreApplication::processEvents();
        QCOMPARE(host_->completed.size(), 20);
    }
};

QTEST_GUILESS_MAIN(CloudRestClientTest)
#include "cloud_rest_client_test.moc"
