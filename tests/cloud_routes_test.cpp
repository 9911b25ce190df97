#include <sqlite3.h>

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

#include "cloud/command_folder.h"
#include "cloud/parameters.h"
#include "cloud/terminal_routes.h"
#include "cloud/user_routes.h"
#include "cloud/user_table.h"
#include "link/device_message.h"

namespace {

QByteArray userBody(const QString& cardNo, const QJsonObject& more = {}) {
    QJsonObject info = more;
    info.insert(QStringLiteral("cardInfo"), QJsonObject{{QStringLiteral("cardNo"), cardNo}});
    return QJsonDocument(QJsonObject{{QStringLiteral("userInfo"), info}}).toJson();
}

QByteArray device(const QByteArray& content) {
    return "{\"DeviceSettings\":{" + content + "}}";
}

_gui_menu_ managedBy(std::uint8_t last) {
    _gui_menu_ settings{};
    const std::uint8_t address[] = {10, 0, 0, last};
    std::memcpy(settings.network.own.managerAddress, address, sizeof address);
    settings.network.own.managerPort = 8080;
    return settings;
}

}  // namespace

class CloudRoutesTest : public QObject {
    Q_OBJECT

 private:
    QTemporaryDir root_;

    QStringList folders() const {
        return QDir(CommandFolder::directory())
            .entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    void touch(const QString& path) const {
        QDir().mkpath(QFileInfo(CommandFolder::directory() + path).path());
        QFile file(CommandFolder::directory() + path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    void sql(const char* text) const {
        sqlite3* db = nullptr;
        QDir().mkpath(root_.path() + QStringLiteral("/mnt/data/db_user2"));
        const QString path = root_.path() + QStringLiteral("/mnt/data/db_user2/DB_userT.bin");
        QCOMPARE(sqlite3_open(qPrintable(path), &db), SQLITE_OK);
        QCOMPARE(sqlite3_exec(db, text, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    static UserTable::Ids readTable() {
        UserTable table;
        table.sqlOpen_ex();
        return table.sqlGetUserId();
    }

 private slots:
    void initTestCase() { qputenv("ZEL_ROOT", root_.path().toLocal8Bit()); }
    void init() { QDir(root_.path() + QStringLiteral("/mnt")).removeRecursively(); }

    void cardNumbersAreChecked_data() {
        QTest::addColumn<QString>("cardNo");
        QTest::addColumn<int>("sendAndGet");
        QTest::addColumn<int>("remove");
        QTest::newRow("empty") << "" << 3001 << 9999;
        QTest::newRow("5") << "12345" << 3001 << 1000;
        QTest::newRow("6") << "12345a" << 1000 << 1000;
        QTest::newRow("11") << "1234567890Z" << 1000 << 1000;
        QTest::newRow("12") << "123456789012" << 3001 << 1000;
        QTest::newRow("17") << "12345678901234567" << 3001 << 9999;
        QTest::newRow("path") << "../etc/x" << 9999 << 9999;
        QTest::newRow("dots") << "......" << 9999 << 9999;
        QTest::newRow("underscore") << "12_456" << 9999 << 9999;
        QTest::newRow("line break") << "123456\n" << 9999 << 9999;
        QTest::newRow("NUL") << QString(QLatin1String("123\0456", 7)) << 9999 << 9999;
        QTest::newRow("other letters") << QString::fromUtf8("가나다라마바") << 9999 << 9999;
    }
    void cardNumbersAreChecked() {
        QFETCH(QString, cardNo);
        QFETCH(int, sendAndGet);
        QFETCH(int, remove);
        QCOMPARE(user_routes::decodeUserDataSend(userBody(cardNo)).code, sendAndGet);
        QCOMPARE(user_routes::decodeUserDataGet(userBody(cardNo)).code, sendAndGet);
        QCOMPARE(user_routes::decodeUserDataDelete(userBody(cardNo)).code, remove);
        QCOMPARE(terminal_routes::decodeRunEnrollMode(userBody(cardNo)).code, remove);
    }

    /// Whatever does not fit is refused as a whole, on every route.
    void badBodiesAreRefused_data() {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("array") << QByteArray("[{}]");
        QTest::newRow("half") << QByteArray("{\"DeviceSettings\":{");
        QTest::newRow("nested") << QByteArray("{\"DeviceSettings\":") + QByteArray(100000, '[');
        QTest::newRow("empty") << QByteArray("{}");
        QTest::newRow("wrong group")
            << QByteArray(R"({"DeviceSettings":5,"TimeSettings":[],"userInfo":""})");
        for (const char* const bad : {R"("DoorOpenDuration":"0")",
                                      R"("DoorOpenDuration":21)",
                                      R"("DoorOpenDuration":"")",
                                      R"("DoorOpenDuration":1.5)",
                                      R"("DoorOpenDuration":-1)",
                                      R"("DoorOpenDuration":"+5")",
                                      R"("DoorOpenDuration":" 5")",
                                      R"("DoorOpenDuration":1e300)",
                                      R"("DoorOpenDuration":null)",
                                      R"("DoorOpenDuration":[5])",
                                      R"("AdminPassword":"")",
                                      R"("AdminPassword":"12a4")",
                                      R"("AdminPassword":"1234\n")",
                                      R"("AdminPassword":"123456789")",
                                      R"("AdminPassword":1234)",
                                      R"("DeviceNo":4294967296)",
                                      R"("time":"2031-02-29 10:00:00")",
                                      R"("time":"2031-12-24")",
                                      R"("time":"")",
                                      R"("time":"2031-12-24 24:00:00")",
                                      R"("time":"1999-12-24 10:00:00")",
                                      R"("CommType":{"IPAddress":""})",
                                      R"("CommType":{"IPAddress":"0.0.0.0"})",
                                      R"("CommType":{"IPAddress":"10.0.0"})",
                                      R"("CommType":{"IPAddress":"10.0.0.256"})",
                                      R"("CommType":{"IPAddress":"10.0.0.5\n"})",
                                      R"("CommType":{"IPAddress":167772165})",
                                      R"("CommType":{"PortNo":0})",
                                      R"("CommType":{"PortNo":65536})",
                                      R"("Environment":{"ScreenSettings":{"MenuTimeout":15}})",
                                      R"("Environment":{"ScreenSettings":[]})",
                                      R"("Environment":0)"})
            QTest::newRow(bad) << device(bad);
        for (const char* const bad :
             {R"({"TimeSettings":{"Date":"2031-12-24"}})",
              R"({"TimeSettings":{"Date":"2031-13-24","Time":"23:59:58"}})",
              R"({"TimeSettings":{"Date":"31-12-24","Time":"23:59:58"}})",
              R"({"TimeSettings":{"Date":"2031-12-24","Time":"23:59"}})", R"({"system":"explode"})",
              R"({"system":1})", R"({"firmFile":"@evil/x"})", R"({"firmFile":":80@evil/x"})",
              R"({"firmFile":".evil.com/x"})", R"({"firmFile":""})", R"({"firmFile":":x/y"})",
              R"({"firmFile":":99999/y"})", R"({"firmFile":"/y","version":5})"})
            QTest::newRow(bad) << QByteArray(bad);
    }
    void badBodiesAreRefused() {
        QFETCH(QByteArray, body);
        QCOMPARE(terminal_routes::decodeDeviceSet(body).code, 9999);
        QCOMPARE(terminal_routes::decodeTimeSet(body).code, 9999);
        QCOMPARE(terminal_routes::decodeSystemSet(body).code, 9999);
        QCOMPARE(terminal_routes::decodeFirmwareUpdate(body, QStringLiteral("10.0.0.5")).code,
                 9999);
        QCOMPARE(terminal_routes::decodeRunEnrollMode(body).code, 9999);
        QCOMPARE(user_routes::decodeUserDataSend(body).code, 3001);
        QCOMPARE(user_routes::decodeUserDataGet(body).code, 3001);
        QCOMPARE(user_routes::decodeUserDataDelete(body).code, 9999);
    }

    void userValuesOfTheWrongTypeAreRefused() {
        const auto send = [](const char* key, const QJsonValue& value) {
            const QJsonObject more{{QLatin1String(key), value}};
            return user_routes::decodeUserDataSend(userBody(QStringLiteral("123456"), more)).code;
        };
        const auto face = [](const QString& base64) {
            return QJsonObject{{QStringLiteral("visImg"), base64}};
        };
        QCOMPARE(send("authType", 5), 9999);
        QCOMPARE(send("user", QJsonArray{}), 9999);
        QCOMPARE(send("templateFile", QString(QChar(0xD800))), 9999);
        QCOMPARE(send("faceVisible", face(QStringLiteral("@@@@"))), 9999);
        QCOMPARE(send("faceVisible", face(QStringLiteral("/9j/\r\n/9j/"))), 1000);
    }

    void deviceSettingsChangeOnlyWhatIsGiven() {
        _gui_menu_ before = managedBy(5);
        before.screen.brightness = 7;
        const auto setup = terminal_routes::decodeDeviceSet(device(
            R"("DoorOpenDuration":"20","DeviceNo":4294967295,"AdminPassword":"00001234",)"
            R"("QuickRegistration":{"UseQuickRegistraion":1,"SelectUserLevel":"2"},)"
            R"("Environment":{"ScreenSettings":{"MenuTimeout":0,"SleepMode":"180"},)"
            R"("SoundSettings":{"AuthFailureAlarm":3}},"CommType":{"IPAddress":"10.0.0.9"})"));
        QCOMPARE(setup.code, 1000);
        _gui_menu_ after = before;
        setup.value.applyTo(after);

        _gui_menu_ expected = managedBy(9);
        expected.screen.brightness = 7;
        expected.setup.doorOpenDuration = 20;
        expected.setup.deviceNumber = 0xFFFFFFFF;
        std::memcpy(expected.setup.adminPassword, "00001234", 8);
        expected.setup.quickRegistration = 1;
        expected.registration.on = 1;
        expected.registration.userLevel = 2;
        expected.screen.menuTimeout = 3;
        expected.screen.sleepMode = 3;
        expected.sound.recognitionFailSound = 3;
        QVERIFY(std::memcmp(&after, &expected, sizeof after) == 0);

        after = before;
        terminal_routes::decodeDeviceSet(device("")).value.applyTo(after);
        QVERIFY(std::memcmp(&after, &before, sizeof after) == 0);
    }

    /// What the status route answers can be sent back to the settings route.
    void statusAndSettingsSpeakTheSameLanguage() {
        _gui_menu_ settings = managedBy(5);
        setFieldText(settings.setup.adminPassword, QStringLiteral("4321"));
        setFieldText(settings.firmwareVersion, QStringLiteral("1.2.3"));
        settings.setup.doorOpenDuration = 5;
        settings.registration.authMethod = settings.registration.userLevel = 1;
        settings.face.securityLevel = settings.screen.brightness = 4;
        settings.screen.sleepMode = 5;
        const QJsonObject status =
            terminal_routes::deviceStatus(settings, QDateTime::currentDateTime());
        const QByteArray json = QJsonDocument(status).toJson();
        QVERIFY(json.contains("\"1.2.3\"") && json.contains("\"600\"") && !json.contains("4321"));

        const auto back = terminal_routes::decodeDeviceSet(json);
        QCOMPARE(back.code, 1000);
        _gui_menu_ changed = settings;
        back.value.applyTo(changed);
        QVERIFY(std::memcmp(&changed, &settings, sizeof changed) == 0);
    }

    void firmwareComesFromTheManager() {
        const auto address = [](const char* file) {
            const QByteArray body =
                QByteArray(R"({"firmwareType":"A","version":"2","firmFile":")") + file + "\"}";
            const auto firmware =
                terminal_routes::decodeFirmwareUpdate(body, QStringLiteral("10.0.0.5"));
            return firmware.ok() ? firmware.value.address : QString();
        };
        QCOMPARE(address(":8080/fw/zel01.tar.bz2"),
                 QStringLiteral("http://10.0.0.5:8080/fw/zel01.tar.bz2"));
        QCOMPARE(address("/fw.bin"), QStringLiteral("http://10.0.0.5/fw.bin"));
        QCOMPARE(QUrl(address("/@evil.com/x")).host(), QStringLiteral("10.0.0.5"));
    }

    void commandsComeBackAsTheyWereSent() {
        DoReceiveUserData user;
        user.cardNo = QStringLiteral("123456");
        user.name = QString::fromUtf8("a\\n\n\r\\홍길동\t\\");
        user.templateFile = QString(QLatin1String("x\0y", 3));
        user.restrictTime = QStringLiteral("\n");
        CommandFolder writer;
        touch(QStringLiteral("logo/picture.png"));
        touch(QStringLiteral("usb/20_add_123456"));
        for (int i = 0; i < 50; ++i)
            QVERIFY(i % 2 == 0 ? writer.writeAdd(user, QByteArray("jpg"))
                               : writer.writeDelete(QStringLiteral("A1")));
        QCOMPARE(folders().size(), 52);

        for (int i = 0; i < 50; ++i) {
            const auto command = CommandFolder::oldest();
            QVERIFY(command.has_value());
            QCOMPARE(command->kind == CommandFolder::Kind::Add, i % 2 == 0);
            if (i == 0) {
                const auto read = CommandFolder::takeUser(*command);
                QVERIFY(read.has_value());
                QCOMPARE(read->name, user.name);
                QCOMPARE(read->templateFile, user.templateFile);
                QCOMPARE(read->restrictTime, user.restrictTime);
                QCOMPARE(read->picture, QStringLiteral("123456.jpg"));
                QVERIFY(QFile::exists(CommandFolder::directory() + read->picture));
            }
            CommandFolder::remove(*command);
        }
        QVERIFY(!CommandFolder::oldest().has_value());
        QCOMPARE(folders(), QStringList({QStringLiteral("logo"), QStringLiteral("usb")}));
    }

    void unfinishedCommandsAreNeverTaken() {
        touch(QStringLiteral(".240101120000000_add_123456/123456.info"));
        touch(QStringLiteral(".thumbnails/keep"));
        touch(QStringLiteral("240101120000001_add_123456/123456.jpg"));
        touch(QStringLiteral("240101120000002_mod_123456/x"));
        const auto command = CommandFolder::oldest();
        QVERIFY(command.has_value() && command->path.endsWith(QLatin1String("001_add_123456")));
        QVERIFY(!CommandFolder::takeUser(*command).has_value());
        CommandFolder::remove(*command);
        QVERIFY(!CommandFolder::oldest().has_value());
        CommandFolder::removeUnfinished();
        QCOMPARE(folders(), QStringList({QStringLiteral(".thumbnails"),
                                         QStringLiteral("240101120000002_mod_123456")}));
    }

    void usersPresentAreListed() {
        QCOMPARE(readTable().count, 0);
        QVERIFY(!QFile::exists(root_.path() + QStringLiteral("/mnt/data/db_user2")));
        sql("CREATE TABLE USER_T (N INTEGER, ID TEXT, MARK INTEGER);"
            "INSERT INTO USER_T VALUES (1,'a1',0),(2,'b2',159),(3,'gone',160),(4,'c3',-1);");
        QCOMPARE(readTable().joined, QByteArray("a1,b2,c3"));
        QCOMPARE(readTable().count, 3);
    }

    void anUnreadableTableIsEmptyAndQuick_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("garbage") << QByteArray(9000, 'x');
        QTest::newRow("cut") << QByteArray("SQLite format 3\0\x10\0\1\1\0@  ", 24);
    }
    void anUnreadableTableIsEmptyAndQuick() {
        QFETCH(QByteArray, content);
        sql("CREATE TABLE OTHER (A);");
        QCOMPARE(readTable().count, 0);
        QFile file(root_.path() + QStringLiteral("/mnt/data/db_user2/DB_userT.bin"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        file.close();
        QCOMPARE(readTable().count, 0);
    }

    void aLockedTableIsEmptySoon() {
        sql("CREATE TABLE USER_T (N INTEGER, ID TEXT, MARK INTEGER);"
            "INSERT INTO USER_T VALUES (1,'a1',0);");
        sqlite3* writer = nullptr;
        const QString path = root_.path() + QStringLiteral("/mnt/data/db_user2/DB_userT.bin");
        QCOMPARE(sqlite3_open(qPrintable(path), &writer), SQLITE_OK);
        QCOMPARE(sqlite3_exec(writer, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
        QElapsedTimer time;
        time.start();
        QCOMPARE(readTable().count, 0);
        QVERIFY(time.elapsed() < 900);
        sqlite3_close(writer);
        QCOMPARE(readTable().count, 1);
    }
};

QTEST_GUILESS_MAIN(CloudRoutesTest)
#include "cloud_routes_test.moc"
