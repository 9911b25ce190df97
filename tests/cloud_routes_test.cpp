#include <sqlite3.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include "cloud/parameters.h"
#include "cloud/terminal_routes.h"
#include "cloud/user_table.h"
#include "link/device_message.h"
#include "tests/support/test_root.h"

namespace {

QByteArray device(const QByteArray& content) {
    return "{\"DeviceSettings\":{" + content + "}}";
}

_gui_menu_ managedBy(std::uint8_t last) {
    _gui_menu_ settings{};
    const std::uint8_t address[] = {10, 0, 0, last};
    memcpy(settings.network.own.managerAddress, address, sizeof address);
    settings.network.own.managerPort = 8080;
    return settings;
}

}  // namespace

class CloudRoutesTest : public QObject {
    Q_OBJECT

 private:
    TestRoot root_;

    QString table() const { return root_.path("/mnt/data/db_user2/DB_userT.bin"); }
    /// Opens the table's file and has @p text carried out.
    sqlite3* sql(const char* text) const {
        sqlite3* db = nullptr;
        [&] {
            QCOMPARE(sqlite3_open(qPrintable(table()), &db), SQLITE_OK);
            QCOMPARE(sqlite3_exec(db, text, nullptr, nullptr, nullptr), SQLITE_OK);
        }();
        return db;
    }
    /// How many users there are, and who.
    static QByteArray users() {
        UserTable table;
        table.sqlOpen_ex();
        const UserTable::Ids ids = table.sqlGetUserId();
        return QByteArray::number(ids.count) + ' ' + ids.joined;
    }

 private slots:
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
        memcpy(expected.setup.adminPassword, "00001234", 8);
        expected.setup.quickRegistration = 1;
        expected.registration.on = 1;
        expected.registration.userLevel = 2;
        expected.screen.menuTimeout = 3;
        expected.screen.sleepMode = 3;
        expected.sound.recognitionFailSound = 3;
        QVERIFY(memcmp(&after, &expected, sizeof after) == 0);

        after = before;
        terminal_routes::decodeDeviceSet(device("")).value.applyTo(after);
        QVERIFY(memcmp(&after, &before, sizeof after) == 0);
    }

    /// What the status route answers can be sent back to the settings route, but for what is
    /// secret.
    void statusAndSettingsSpeakTheSameLanguage() {
        _gui_menu_ settings = managedBy(5);
        setFieldText(settings.setup.adminPassword, QStringLiteral("4321"));
        settings.setup.doorOpenDuration = 5;
        settings.registration.authMethod = settings.registration.userLevel = 1;
        settings.face.securityLevel = settings.screen.brightness = 4;
        settings.screen.sleepMode = 5;
        const QByteArray json =
            QJsonDocument(terminal_routes::deviceStatus(settings, QDateTime::currentDateTime()))
                .toJson();
        QVERIFY(json.contains("\"600\"") && !json.contains("4321"));
        const auto back = terminal_routes::decodeDeviceSet(json);
        QCOMPARE(back.code, 1000);
        _gui_menu_ changed{};
        setFieldText(changed.setup.adminPassword, QStringLiteral("4321"));
        back.value.applyTo(changed);
        QVERIFY(memcmp(&changed, &settings, sizeof changed) == 0);
    }

    void firmwareComesFromTheManager() {
        const auto address = [](const char* file) {
            const QByteArray body = QByteArray(R"({"firmFile":")") + file + "\"}";
            return terminal_routes::decodeFirmwareUpdate(body, QStringLiteral("10.0.0.5"))
                .value.address;
        };
        QCOMPARE(address(":8080/fw/zel01.tar.bz2"),
                 QStringLiteral("http://10.0.0.5:8080/fw/zel01.tar.bz2"));
        QCOMPARE(address("/fw.bin"), QStringLiteral("http://10.0.0.5/fw.bin"));
        QCOMPARE(QUrl(address("/@evil.com/x")).host(), QStringLiteral("10.0.0.5"));
    }

    void timesAreGivenInNumbers() {
        const auto code = [](const QByteArray& date, const QByteArray& time) {
            return terminal_routes::decodeTimeSet(R"({"TimeSettings":{"Date":")" + date +
                                                  R"(","Time":")" + time + R"("}})")
                .code;
        };
        QCOMPARE(code("2024-2-9", "1:2:3"), 1000);
        QCOMPARE(code("2024-02-29", "01:02:03"), 1000);
        for (const char* const date : {"2023-2-29", "1999-2-9", "2024-13-1", "2024-2", "2024-2-x"})
            QCOMPARE(code(date, "1:2:3"), 9999);
        for (const char* const time : {"24:0:0", "1:2", "1:2:60", "1:2:3.5", "1:2:", "-1:2:3"})
            QCOMPARE(code("2024-2-9", time), 9999);
    }

    /// A table that cannot be read, or not now, is an empty one.
    void usersPresentAreListed() {
        QCOMPARE(users(), QByteArray("0 "));
        QVERIFY(!QFile::exists(root_.path("/mnt")));
        for (const QByteArray& content : {QByteArray(), QByteArray(9000, 'x'),
                                          QByteArray("SQLite format 3\0\x10\0\1\1\0@", 22)}) {
            root_.write(table(), content);
            QCOMPARE(users(), QByteArray("0 "));
        }
        root_.write(table(), {});
        sqlite3_close(sql("CREATE TABLE OTHER (A);"));
        QCOMPARE(users(), QByteArray("0 "));
        sqlite3* const writer =
            sql("CREATE TABLE USER_T (N INTEGER, ID TEXT, MARK INTEGER);"
                "INSERT INTO USER_T VALUES (1,'a1',0),(2,'b2',159),(3,'gone',160),(4,'c3',-1);"
                "BEGIN EXCLUSIVE");
        QCOMPARE(users(), QByteArray("0 "));
        sqlite3_close(writer);
        QCOMPARE(users(), QByteArray("3 a1,b2,c3"));
    }
};

QTEST_GUILESS_MAIN(CloudRoutesTest)
#include "cloud_routes_test.moc"
