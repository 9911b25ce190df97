#include <QDir>
#include <QJsonObject>
#include <QTcpServer>
#include <QtTest>
#include <algorithm>
#include <memory>

#include "app/main_window.h"
#include "app/management_link.h"
#include "app/window_form.h"
#include "cloud/rest_client.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "sim/service/service_sim.h"
#include "ui/text_line.h"

/// The whole terminal between a controller and a management service: what one of them wants comes
/// out at the other.
class ManagementTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { window_.reset(); }
    void registersAndKeepsChecking();
    void findsTheServiceAgain_data();
    void findsTheServiceAgain();
    void followsTheServiceToItsNewAddress();
    void ordersReachTheController_data();
    void ordersReachTheController();
    void usersAreTakenFromTheirFolders();
    void firmwareIsFetchedAndHandedOver();
    void eventsAreKeptUntilConfirmed();

 private:
    struct Frame {
        quint16 code;
        QByteArray bytes;  // both parameters, then the payload
    };

    void controller(const QByteArray& line) {
        const QString answer = controller_->execute(QString::fromUtf8(line));
        QVERIFY2(answer.startsWith(QLatin1String("ok")), qPrintable(answer));
    }
    QString service(const QByteArray& line) { return service_->execute(QString::fromUtf8(line)); }
    bool connected() const { return window_->managementLink()->connected(); }
    /// Whether a frame of @p code has come; the first one since init() is kept in got_.
    bool has(quint16 code) {
        const auto frame = std::find_if(frames_.cbegin(), frames_.cend(),
                                        [code](const Frame& each) { return each.code == code; });
        if (frame != frames_.cend())
            got_ = frame->bytes;
        return frame != frames_.cend();
    }
    int calls(const char* name) const { return static_cast<int>(calls_.count(name)); }
    QByteArray file(const char* devicePath) const {
        QFile content(root_.path(devicePath));
        return content.open(QIODevice::ReadOnly) ? content.readAll() : QByteArray();
    }

    DeviceRoot root_;
    std::unique_ptr<ControllerSim> controller_;
    std::unique_ptr<ServiceSim> service_;
    std::unique_ptr<MainWindow> window_;
    QList<Frame> frames_;  // from the terminal to the controller
    QList<QByteArray> calls_;
    QJsonObject lastBody_;
    QByteArray got_;
};

void ManagementTest::initTestCase() {
    root_.write("/mnt/data/rebootchkr", {});
    controller_ = std::make_unique<ControllerSim>(0, 0, root_.path("/mnt/data"));
    QVERIFY(controller_->listening());
    connect(
        controller_.get(), &ControllerSim::frameReceived, this,
        [this](quint16 code, quint8 p1, quint8 p2, const QByteArray& payload) {
            frames_.append({code, QByteArray{}.append(char(p1)).append(char(p2)).append(payload)});
        });
    qputenv("ZEL_LINK_PORT", QByteArray::number(controller_->port()));
    QTcpServer free;
    QVERIFY(free.listen(QHostAddress::LocalHost));
    const quint16 restPort = free.serverPort();
    qputenv("ZEL_REST_PORT", QByteArray::number(restPort));
    free.close();

    service_ =
        std::make_unique<ServiceSim>(0, 0, TerminalAddress{QStringLiteral("127.0.0.1"), restPort});
    QVERIFY(service_->listening());
    connect(service_.get(), &ServiceSim::called, this,
            [this](const QString& name, const QJsonObject& body) {
                calls_.append(name.toLatin1());
                lastBody_ = body;
            });
    controller("settings network.own.managerAddress 127.0.0.1");
    controller("settings network.own.managerPort " + QByteArray::number(service_->port()));
    controller("settings network.useManager 1");
    controller("settings network.connectPeriod 1");
    controller("settings network.checkPeriod 1");

    window_ = std::make_unique<MainWindow>();
    window_->show();
    QTRY_VERIFY(connected());
}

void ManagementTest::init() {
    service("normal");
    QTRY_VERIFY(connected() && controller_->terminalConnected());
    if (qstrcmp(QTest::currentTestFunction(), "registersAndKeepsChecking") != 0) {
        frames_.clear();
        calls_.clear();
    }
}

void ManagementTest::registersAndKeepsChecking() {
    QCOMPARE(calls("connect"), 1);
    // The service's time is the terminal's.
    QTRY_VERIFY(has(command::SetClock));
    const QDateTime now = QDateTime::currentDateTime();
    QCOMPARE(int(got_[2]), now.date().year() % 100);
    QCOMPARE(got_.size(), 8);
    QTRY_VERIFY(calls("connection-check") >= 2);
    QCOMPARE(calls("connect"), 1);
}

void ManagementTest::findsTheServiceAgain_data() {
    QTest::addColumn<QByteArray>("word");
    for (const char* word : {"away", "hang", "refuse", "garbage", "answer 9999"})
        QTest::newRow(word) << QByteArray(word);
}

void ManagementTest::findsTheServiceAgain() {
    QFETCH(QByteArray, word);
    window_->restClient()->setTransferTimeout(500);
    QCOMPARE(service(word), QStringLiteral("ok"));
    QTRY_VERIFY(!connected());
    window_->restClient()->setTransferTimeout(RestClass::kTransferTimeout);
    QCOMPARE(service("normal"), QStringLiteral("ok"));
    QTRY_VERIFY(connected());
}

void ManagementTest::followsTheServiceToItsNewAddress() {
    ServiceSim other(0, 0, {});
    QSignalSpy called(&other, &ServiceSim::called);
    const QByteArray port = QByteArray::number(other.port());
    QCOMPARE(service("set CommType.PortNo " + port), QStringLiteral("ok 1000 succeed"));
    QTRY_VERIFY(called.count() > 0 && connected());
    QCOMPARE(called[0][0].toString(), QStringLiteral("connect"));
    // The controller has it too: the terminal takes what it sends for its own.
    QTRY_COMPARE(int(controller_->settings().network.own.managerPort), int(other.port()));
    QCOMPARE(service("set CommType.UseManager 0"), QStringLiteral("ok 1000 succeed"));
    QTRY_COMPARE(int(controller_->settings().network.useManager), 0);
    QCOMPARE(service("set CommType.UseManager 1"), QStringLiteral("ok 1000 succeed"));
    QTRY_COMPARE(int(controller_->settings().network.useManager), 1);
    controller("settings network.own.managerPort " + QByteArray::number(service_->port()));
    QTRY_VERIFY(calls("connect") > 0 && connected());
}

void ManagementTest::ordersReachTheController_data() {
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("begin");
    const auto row = [](const char* word, int code, const QByteArray& begin) {
        QTest::newRow(word) << QByteArray(word) << code << begin;
    };
    row("door", 2036, QByteArray(2, '\0'));
    row("time 2031-12-24 23:59:58", 1953, QByteArray::fromHex("01001f0c18173b3a"));
    row("get 01023456789", 2026, QByteArray(2, '\0') + "01023456789" + QByteArray(5, '\0'));
    row("system deleteLogData", 1957, QByteArray(2, '\0'));
    row("system deleteAdmin", 1932, QByteArray::fromHex("0101"));
    row("set DoorOpenDuration 7", 1981, QByteArray::fromHex("0200"));
    row("set Environment.ScreenSettings.Brightness 3", 1951, QByteArray::fromHex("010003"));
}

void ManagementTest::ordersReachTheController() {
    QFETCH(QByteArray, word);
    QFETCH(int, code);
    QFETCH(QByteArray, begin);
    QCOMPARE(service(word), QStringLiteral("ok 1000 succeed"));
    QTRY_VERIFY(has(static_cast<quint16>(code)));
    QCOMPARE(got_.left(begin.size()).toHex(), begin.toHex());
}

void ManagementTest::usersAreTakenFromTheirFolders() {
    QCOMPARE(service("add 12345678 홍길동"), QStringLiteral("ok 1000 succeed"));
    QCOMPARE(service("delete 12345678"), QStringLiteral("ok 1000 succeed"));
    const QDir folders(root_.path("/mnt/data/Images"), QStringLiteral("*_???_12345678"));
    QCOMPARE(folders.entryList(QDir::Dirs).size(), 2);

    QTRY_VERIFY(has(command::EnrolNetworkUser));
    QCOMPARE(got_.size(), int(2 + sizeof(_gui_user_)));
    _gui_user_ user{};
    memcpy(&user, got_.constData() + 2, sizeof user);
    QCOMPARE(fieldText(user.cardNumber), QStringLiteral("12345678"));
    QCOMPARE(fieldText(user.name), QStringLiteral("홍길동"));
    QVERIFY(file("/mnt/data/Images/12345678.jpg").startsWith("\xFF\xD8"));
    QTRY_VERIFY(has(command::DeleteUser));
    QVERIFY(got_.mid(2).startsWith("12345678"));
    // They stay until the frames have surely arrived.
    QCOMPARE(folders.entryList(QDir::Dirs).size(), 2);
    QTRY_VERIFY_WITH_TIMEOUT(folders.entryList(QDir::Dirs).isEmpty(), 10000);
}

void ManagementTest::firmwareIsFetchedAndHandedOver() {
    QCOMPARE(service("firmware 1.2.0"), QStringLiteral("ok 1000 succeed"));
    QTRY_VERIFY(has(command::UpdateFirmware));
    QCOMPARE(got_.toHex(), QByteArray("0000"));
    QVERIFY(file("/mnt/data/input/zel01.tar.bz2") ==
            ServiceCalls::firmware(QStringLiteral("1.2.0")));
    const QDir orders(root_.path("/mnt/data/firmware_orders"));
    QTRY_VERIFY(orders.exists() && orders.isEmpty());

    // A connection that breaks off leaves no archive, neither half a new one nor the old one.
    frames_.clear();
    service("slow 100000");
    QCOMPARE(service("firmware 1.3.0"), QStringLiteral("ok 1000 succeed"));
    const QDir input(root_.path("/mnt/data/input"));
    const auto begun = [&input] {
        const QFileInfoList files = input.entryInfoList(QDir::Files);
        return files.size() == 1 && files[0].size() > 0 && files[0].size() < 1000000;
    };
    QTRY_VERIFY(begun());
    QCOMPARE(orders.entryList(QDir::Files).size(), 1);
    QCOMPARE(window_->getActivateWindowForm()->getTitle(), QStringLiteral("upgradingWindow"));
    const auto* speed = window_->findChild<TextLine*>(QStringLiteral("downloadSpeed"));
    QTRY_VERIFY(speed->text().endsWith(QLatin1String(" kB/s")));
    service("away");
    QTRY_VERIFY(has(command::UpdateFirmware));
    QVERIFY(input.entryList(QDir::Files).isEmpty() && orders.isEmpty());
}

void ManagementTest::eventsAreKeptUntilConfirmed() {
    controller("settings setup.operation 0");
    controller("card 10000002");
    QTRY_VERIFY(has(command::EventReported));
    QCOMPARE(got_.size(), int(2 + sizeof(EventReported)));
    const QJsonObject info = lastBody_.value(QStringLiteral("inoutInfo")).toObject();
    const QJsonObject card = info.value(QStringLiteral("cardInfo")).toObject();
    QCOMPARE(card.value(QStringLiteral("cardNo")).toString(), QStringLiteral("10000002"));

    service("answer 9999");
    frames_.clear();
    calls_.clear();
    controller("card 10000003");
    QTRY_VERIFY(calls("user-inout-log") > 0);
    QTRY_VERIFY(!connected());
    QVERIFY(!has(command::EventReported));
    service("normal");
    QTRY_VERIFY(connected());
    controller("unsent");
    QTRY_VERIFY(has(command::EventReported));
    service("get 01098765432");
    QTRY_VERIFY(calls("user-enroll") > 0 && has(command::UserReported));
}

QTEST_MAIN(ManagementTest)
#include "management_test.moc"
