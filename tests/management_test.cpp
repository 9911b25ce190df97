#include <QDir>
#include <QJsonObject>

#include "app/management_link.h"
#include "cloud/rest_client.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_test.h"
#include "ui/text_line.h"

/// The whole terminal between a controller and a management service: what one of them wants comes
/// out at the other.
class ManagementTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        service_ = std::make_unique<ServiceSim>(
            0, 0,
            TerminalAddress{QStringLiteral("127.0.0.1"),
                            static_cast<quint16>(qEnvironmentVariableIntValue("ZEL_REST_PORT"))});
        QVERIFY(service_->listening());
        connect(service_.get(), &ServiceSim::called, this,
                [this](const QString& name, const QJsonObject& body) {
                    calls_.append(name.toLatin1());
                    bodies_[name.toLatin1()] = body;
                });
        words({"settings network.own.managerAddress 127.0.0.1", "settings network.connectPeriod 1",
               "settings network.checkPeriod 1"});
        set("network.own.managerPort", service_->port());
        set("network.useManager", 1);
    }
    void init() {
        service("normal");
        QTRY_VERIFY(connected() && t->sim.terminalConnected());
        if (qstrcmp(QTest::currentTestFunction(), "registersAndKeepsChecking") != 0) {
            t->frames.clear();
            calls_.clear();
        }
    }

    void registersAndKeepsChecking() {
        QCOMPARE(calls("connect"), 1);
        // The service's time is the terminal's.
        QTRY_VERIFY(has(command::SetClock));
        const QDateTime now = QDateTime::currentDateTime();
        QCOMPARE(int(got_[0]), now.date().year() % 100);
        QCOMPARE(got_.size(), 6);
        QTRY_VERIFY(calls("connection-check") >= 2);
        QCOMPARE(calls("connect"), 1);
    }

    void findsTheServiceAgain_data() {
        QTest::addColumn<QByteArray>("word");
        for (const char* word : {"away", "hang", "refuse", "garbage", "answer 9999"})
            QTest::newRow(word) << QByteArray(word);
    }

    void findsTheServiceAgain() {
        QFETCH(QByteArray, word);
        window()->restClient()->setTransferTimeout(500);
        QCOMPARE(service(word), QStringLiteral("ok"));
        QTRY_VERIFY(!connected());
        window()->restClient()->setTransferTimeout(RestClass::kTransferTimeout);
        QCOMPARE(service("normal"), QStringLiteral("ok"));
        QTRY_VERIFY(connected());
    }

    void followsTheServiceToItsNewAddress() {
        ServiceSim other(0, 0, {});
        QSignalSpy called(&other, &ServiceSim::called);
        const QByteArray port = QByteArray::number(other.port());
        order("set CommType.PortNo " + port);
        QTRY_VERIFY(called.count() > 0 && connected());
        QCOMPARE(called[0][0].toString(), QStringLiteral("connect"));
        // The controller has it too: the terminal takes what it sends for its own.
        QTRY_COMPARE(int(t->sim.settings().network.own.managerPort), int(other.port()));
        QTRY_VERIFY(t->agrees());
        order("set CommType.UseManager 0");
        QTRY_COMPARE(int(t->sim.settings().network.useManager), 0);
        order("set CommType.UseManager 1");
        QTRY_COMPARE(int(t->sim.settings().network.useManager), 1);
        set("network.own.managerPort", service_->port());
        QTRY_VERIFY(calls("connect") > 0 && connected());
    }

    void ordersReachTheController() {
        const std::pair<const char*, const char*> rows[] = {
            {"door", "2036 0 0"},
            {"time 2031-12-24 23:59:58", "1953 1 0 1f 0c 18 17 3b 3a"},
            {"get 01023456789", "2026 0 0 30 31 30 32 33 34 35 36 37 38 39 00 00 00 00 00"},
            {"system deleteLogData", "1957 0 0"},
            {"system deleteAdmin", "1932 1 1"},
            {"set DoorOpenDuration 7", "1981 2 0"},
            {"set Environment.ScreenSettings.Brightness 3", "1951 1 0 03"}};
        for (const auto& [word, frame] : rows) {
            t->frames.clear();
            order(word);
            QVERIFY2(t->sends(frame), word);
        }
    }

    void usersAreTakenFromTheirFolders() {
        order("add 12345678 홍길동");
        order("delete 12345678");
        const QDir folders(t->root.path("/mnt/data/Images"), QStringLiteral("*_???_12345678"));
        QCOMPARE(folders.entryList(QDir::Dirs).size(), 2);

        QTRY_VERIFY(has(command::EnrolNetworkUser));
        QCOMPARE(got_.size(), int(sizeof(_gui_user_)));
        _gui_user_ user{};
        memcpy(&user, got_.constData(), sizeof user);
        QCOMPARE(fieldText(user.cardNumber), QStringLiteral("12345678"));
        QCOMPARE(fieldText(user.name), QStringLiteral("홍길동"));
        QVERIFY(file("/mnt/data/Images/12345678.jpg").startsWith("\xFF\xD8"));
        QTRY_VERIFY(has(command::DeleteUser));
        QVERIFY(got_.startsWith("12345678"));
        // They stay until the frames have surely arrived.
        QCOMPARE(folders.entryList(QDir::Dirs).size(), 2);
        QTRY_VERIFY_WITH_TIMEOUT(folders.entryList(QDir::Dirs).isEmpty(), 10000);
    }

    void firmwareIsFetchedAndHandedOver() {
        order("firmware 1.2.0");
        QTRY_VERIFY(has(command::UpdateFirmware));
        QVERIFY(t->sent("1990 0 0") >= 0);
        QVERIFY(file("/mnt/data/input/zel01.tar.bz2") ==
                ServiceCalls::firmware(QStringLiteral("1.2.0")));
        const QDir orders(t->root.path("/mnt/data/firmware_orders"));
        QTRY_VERIFY(orders.exists() && orders.isEmpty());

        // A connection that breaks off leaves no archive, neither half a new one nor the old one.
        t->frames.clear();
        service("slow 100000");
        order("firmware 1.3.0");
        const QDir input(t->root.path("/mnt/data/input"));
        const auto begun = [&input] {
            const QFileInfoList files = input.entryInfoList(QDir::Files);
            return files.size() == 1 && files[0].size() > 0 && files[0].size() < 1000000;
        };
        QTRY_VERIFY(begun());
        QCOMPARE(orders.entryList(QDir::Files).size(), 1);
        QCOMPARE(window()->getActivateWindowForm()->getTitle(), QStringLiteral("upgradingWindow"));
        const auto* speed = window()->findChild<TextLine*>(QStringLiteral("downloadSpeed"));
        QTRY_VERIFY(speed->text().endsWith(QLatin1String(" kB/s")));
        service("away");
        QTRY_VERIFY(has(command::UpdateFirmware));
        QVERIFY(input.entryList(QDir::Files).isEmpty() && orders.isEmpty());
    }

    void eventsAreKeptUntilConfirmed() {
        words({"settings setup.operation 0", "card 10000002"});
        QTRY_VERIFY(has(command::EventReported));
        QCOMPARE(got_.size(), int(sizeof(EventReported)));
        const QJsonObject info =
            bodies_.value("user-inout-log").value(QStringLiteral("inoutInfo")).toObject();
        const QJsonObject card = info.value(QStringLiteral("cardInfo")).toObject();
        QCOMPARE(card.value(QStringLiteral("cardNo")).toString(), QStringLiteral("10000002"));

        service("answer 9999");
        t->frames.clear();
        calls_.clear();
        word("card 10000003");
        QTRY_VERIFY(calls("user-inout-log") > 0);
        QTRY_VERIFY(!connected());
        QVERIFY(!has(command::EventReported));
        service("normal");
        QTRY_VERIFY(connected() && has(command::EventReported));
        // A single refusal is made up for as well.
        t->frames.clear();
        calls_.clear();
        service("answer 9999 user-inout-log");
        word("card 10000002");
        QTRY_VERIFY(calls("user-inout-log") > 0);
        service("normal");
        QTRY_VERIFY(has(command::EventReported));
        // Whoever is asked for is reported, several at once too.
        for (const char* number : {"01098765432", "01044447777", "01066665555"})
            order(QByteArray("get ") + number);
        for (const char* reported :
             {"2042 0 0 30 31 30 39 38", "2042 0 0 30 31 30 34 34", "2042 0 0 30 31 30 36 36"})
            QTRY_VERIFY2(t->sent(reported) >= 0, reported);
    }

 private:
    QString service(const QByteArray& line) { return service_->execute(QString::fromUtf8(line)); }
    void order(const QByteArray& line) {
        QCOMPARE(service(line), QStringLiteral("ok 1000 succeed"));
    }
    bool connected() const { return window()->managementLink()->connected(); }
    /// Whether a frame of @p code has come; the payload of the first one is kept in got_.
    bool has(quint16 code) {
        const int at = t->sent(QByteArray::number(code).constData());
        if (at >= 0)
            got_ = QByteArray::fromHex(t->frames[at].section(QLatin1Char(' '), 3).toLatin1());
        return at >= 0;
    }
    int calls(const char* name) const { return static_cast<int>(calls_.count(name)); }
    QByteArray file(const char* devicePath) const {
        QFile content(t->root.path(devicePath));
        return content.open(QIODevice::ReadOnly) ? content.readAll() : QByteArray();
    }

    std::unique_ptr<ServiceSim> service_;
    QList<QByteArray> calls_;
    QHash<QByteArray, QJsonObject> bodies_;  // of the latest call of each name
    QByteArray got_;
};

QTEST_MAIN(ManagementTest)
#include "management_test.moc"
