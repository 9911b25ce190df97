#include <sqlite3.h>

#include <QtTest>
#include <set>

#include "base/version.h"
#include "cloud/command_folder.h"
#include "cloud/event_reports.h"
#include "cloud/management_commands.h"
#include "cloud/rest_client.h"
#include "cloud/terminal_routes.h"
#include "cloud/user_routes.h"
#include "cloud/user_table.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "link/device_records.h"
#include "tests/cloud_test_support.h"

// What docs/device-link.md says about codes and records is what the program does, and what goes
// from one record to another, or comes from the service, arrives where it belongs.

namespace {

struct Row {
    const char* record;
    const char* field;
    std::size_t recordSize;
    std::size_t offset;
    std::size_t size;
    std::size_t documentedOffset;
    std::size_t documentedSize;
    const char* like;  // field of another record
};

constexpr Row kRows[] = {
#define FIELD(record, member, documentedOffset, documentedSize, like) \
    {#record,                                                         \
     #member,                                                         \
     sizeof(record),                                                  \
     offsetof(record, member),                                        \
     sizeof(static_cast<record*>(nullptr)->member),                   \
     documentedOffset,                                                \
     documentedSize,                                                  \
     like},
#include "records_rows.inc"
#undef FIELD
};

/// A record as it lies in a frame.
struct Bytes {
    const char* record;
    QByteArray bytes;

    /// The bytes of a field, where the document has it; empty when it has none.
    QByteArray field(const QString& name) const {
        for (const Row& row : kRows) {
            // The first part of this one is the other.
            const bool isPart =
                qstrcmp(record, "info_s") == 0 && qstrcmp(row.record, "_gui_user_") == 0;
            if ((isPart || qstrcmp(row.record, record) == 0) && name == QLatin1String(row.field))
                return bytes.mid(int(row.documentedOffset), int(row.documentedSize));
        }
        return {};
    }
};

/// A record in which every field is filled with a character of its own.
Bytes distinct(const char* record) {
    Bytes all{record, {}};
    char character = '0';
    for (const Row& row : kRows) {
        if (qstrcmp(row.record, record) == 0)
            all.bytes.append(QByteArray(int(row.documentedSize), character++));
    }
    return all;
}

template <typename Record>
Record as(const QByteArray& bytes) {
    Record record;
    std::memcpy(&record, bytes.constData(), sizeof record);
    return record;
}

template <typename Record>
QByteArray bytesOf(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

/// Every field of @p to that is like one of another record is the same as that in @p from, for all
/// of the fields have values of their own there.
void verifyCarried(const Bytes& to, const Bytes& from) {
    int carried = 0;
    for (const Row& row : kRows) {
        if (qstrcmp(row.record, to.record) != 0 || *row.like == '\0')
            continue;
        QVERIFY2(to.field(QLatin1String(row.field)) == from.field(QLatin1String(row.like)),
                 row.field);
        ++carried;
    }
    QVERIFY(carried > 0);
}

QJsonObject json(QByteArray text) {
    return QJsonDocument::fromJson(text.replace('\'', '"')).object();
}

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

class RecordsTest : public QObject {
    Q_OBJECT

 private slots:
    void init() { root_.clear("/mnt"); }

    void everyCommandIsListedUnderItsDirection() {
        const QString text = QString::fromUtf8(
            TestRoot::read(QStringLiteral(ZEL_SOURCE_DIR "/docs/device-link.md")));
        const QRegularExpression row(QStringLiteral("\n\\| (\\d+) \\| `(\\w+)` \\|"));
        QStringList documented;
        for (const char* title :
             {"## From the terminal to the controller", "## From the controller to the terminal"}) {
            auto rows = row.globalMatch(
                text.section(QLatin1String(title), 1).section(QLatin1String("\n## "), 0, 0));
            while (rows.hasNext())
                documented +=
                    QLatin1Char(title[12]) + rows.next().capturedTexts().mid(1).join(QString());
        }
        QStringList known;
        std::set<std::pair<command::Direction, quint16>> codes;
        for (std::size_t i = 0; i < command::count(); ++i) {
            const command::Description& code = command::all()[i];
            const bool up = code.direction == command::Direction::ToController;
            known += (up ? QLatin1Char('t') : QLatin1Char('c')) + QString::number(code.code) +
                     QLatin1String(code.name);
            codes.insert({code.direction, code.code});
        }
        QCOMPARE(documented, known);
        QCOMPARE(int(codes.size()), known.size());
    }

    void everyRecordIsDescribedToTheLastByte() {
        std::size_t described = 0;
        for (std::size_t i = 0; i < std::size(kRows); ++i) {
            const Row& row = kRows[i];
            const QByteArray name = QByteArray(row.record) + '.' + row.field;
            QVERIFY2(row.offset == row.documentedOffset && row.size == row.documentedSize,
                     name.constData());
            QVERIFY2(row.offset == described, ("nothing is said before " + name).constData());
            described += row.size;
            if (i + 1 == std::size(kRows) || qstrcmp(kRows[i + 1].record, row.record) != 0) {
                QVERIFY2(described == row.recordSize,
                         ("nothing is said behind " + name).constData());
                described = 0;
            }
        }
    }

    void whatTheServiceSetsIsSavedInBlocks() {
        const Bytes menu = distinct("_gui_menu_");
        terminal_.menu = as<_gui_menu_>(menu.bytes);
        Device_Setup_Parameter setup;
        commands_.setDevice(QVariant::fromValue(setup));
        QCOMPARE(terminal_.takeLog(), QStringLiteral("1981(2,0)27 1982(1,0)7 1950(1,0)5 "
                                                     "1951(1,0)7 1954(1,0)3 ip 1986(4,0)23 menu "
                                                     "timers"));
        const char* const blocks[] = {"setup.deviceNumber", "registration.on", "face.securityLevel",
                                      "screen.brightness", "sound.volume"};
        for (int i = 0; i < 5; ++i) {
            const QByteArray& block = terminal_.payloads[i];
            const int at = menu.bytes.indexOf(menu.field(QLatin1String(blocks[i])));
            QCOMPARE(block, menu.bytes.mid(at, block.size()));
        }
        verifyCarried({"ServiceNetwork", terminal_.payloads[5]}, menu);

        setup.time = QStringLiteral("2031-12-24 23:59:58");
        setup.managerPort = 8081;
        setup.bytes.push_back({offsetof(_gui_menu_, screen.brightness), 9});
        terminal_.payloads.clear();
        commands_.setDevice(QVariant::fromValue(setup));
        QVERIFY(
            terminal_.takeLog().startsWith(QStringLiteral("1981(2,0)27 1953(1,0)6 1982(1,0)7")));
        QCOMPARE(int(as<ServiceNetwork>(terminal_.payloads[6]).managerPort), 8081);
        _gui_menu_ changed = as<_gui_menu_>(menu.bytes);
        changed.screen.brightness = 9;
        changed.network.own.managerPort = 8081;
        QCOMPARE(bytesOf(terminal_.menu), bytesOf(changed));
        // A record that was on its way then brings the former values back, but not for long.
        terminal_.menu = as<_gui_menu_>(menu.bytes);
        commands_.settingsCame();
        commands_.settingsStored();
        QCOMPARE(bytesOf(terminal_.menu), bytesOf(changed));

        // What the controller does not get does not count here either.
        terminal_.takeLog();
        terminal_.progress.connection = 0;
        commands_.setDevice(QVariant::fromValue(setup));
        terminal_.reconnect();
        QCOMPARE(terminal_.takeLog(), QString());
    }

    void theClockIsSetFromAnyPlausibleTime() {
        for (const char* row : {"2031-12-24 23:59:58 1f0c18173b3a", "2024-2-9 1:2:3 180209010203",
                                "2031-2-30 23:59:58 ", "2031-12-x 23:59:58 ", "2031-12-24 23:x:58 ",
                                "2031-12-24  ", "2031-12-24 23:59:60 ", "24-12-2031 23:59:58 "}) {
            const QStringList words = QString::fromLatin1(row).split(QLatin1Char(' '));
            terminal_.payloads.clear();
            commands_.setTime(QVariant::fromValue(FR01_Parameter{words[0], words[1]}));
            QCOMPARE(terminal_.takeLog(),
                     words[2].isEmpty() ? QString() : QStringLiteral("1953(1,0)6"));
            QCOMPARE(QString::fromLatin1(terminal_.payloads.value(0).toHex()), words[2]);
        }
    }

    void systemActionsSendTheirCommands() {
        for (const char* row :
             {"rebootDevice 1958(0,0)0", "deleteLogData 1957(0,0)0", "deleteSettingData 1957(1,0)0",
              "deleteAllData 1957(2,0)0", "deleteAllUsers ListItem_Synchronizing 1932(3,1)0",
              "deleteGeneralUsers ListItem_Synchronizing 1932(0,1)0",
              "deleteFaceonlyUsers ListItem_Synchronizing 1932(4,1)0",
              "deleteAdmin ListItem_Synchronizing 1932(1,1)0"}) {
            const QString text = QLatin1String(row);
            const QString word = text.section(QLatin1Char(' '), 0, 0);
            commands_.setSystem(QVariant::fromValue(SystemEvent_Parameter{word}));
            QCOMPARE(
                terminal_.takeLog(),
                QStringLiteral("stayWindow %1 liveWindow").arg(text.section(QLatin1Char(' '), 1)));
        }
    }

    void usersAreAskedForDeletedStoredAndEnrolled() {
        const auto card = QVariant::fromValue(FR33_3_Parameter{QStringLiteral("1234567")});
        DoReceiveUserData user;
        user.cardNo = QStringLiteral("1234567");
        user.name = QString(60, QChar(0xAC00));
        user.authType = QStringLiteral("300");
        terminal_.payloads.clear();
        commands_.openDoor();
        commands_.getUser(card);
        commands_.deleteUser(card);
        commands_.enrolUser(QVariant::fromValue(user));
        commands_.runKioskEnrolMode(QVariant::fromValue(user));
        QCOMPARE(terminal_.takeLog(),
                 QStringLiteral("2036(0,0)0 2026(0,0)16 stayWindow ListItem_Synchronizing "
                                "1931(1,0)16 liveWindow 1927(0,0)486 user menu enrol"));
        QCOMPARE(terminal_.payloads[1], QByteArray("1234567") + QByteArray(9, '\0'));
        const auto record = as<_gui_user_>(terminal_.payloads[3]);
        QCOMPARE(fieldText(record.name), QString(33, QChar(0xAC00)));
        QCOMPARE(record.authMethod, 2);  // there is no 300
        QCOMPARE(terminal_.user.origin, 2);

        for (const auto slot : {&ManagementCommands::getUser, &ManagementCommands::deleteUser,
                                &ManagementCommands::enrolUser, &ManagementCommands::setDevice,
                                &ManagementCommands::setSystem, &ManagementCommands::setTime})
            (commands_.*slot)(QVariant(QStringLiteral("nothing")));
        QCOMPARE(terminal_.takeLog(), QString());
    }

    void confirmedReportsGoBackToTheController() {
        root_.write(CommandFolder::directory() + QStringLiteral("face.jpg"), "abc");
        GUI_LOGDATA event{};
        event.year = 31;
        event.month = event.day = 2;
        setFieldText(event.visiblePicture, QStringLiteral("face.jpg"));
        setFieldText(event.infraredPicture, QStringLiteral("../Images/face.jpg"));
        const FR21_Parameter report = event_reports::accessEvent(event);
        QCOMPARE(report.visImg + report.infImg, QStringLiteral("YWJj"));
        QCOMPARE(report.authTime, QStringLiteral("2031-02-02 00:00:00"));

        const auto complete = [this](int command, int code, const QVariant& data) {
            commands_.completed(QVariant::fromValue(ProcIDX{command, 0, code, data}));
        };
        complete(RestClass::kUserInOutLog, 9999, QVariant::fromValue(report));
        complete(RestClass::kUserDeleted, 1000, QVariant::fromValue(FR36_Parameter{}));
        complete(RestClass::kUserEnroll, 1000, QVariant());
        QCOMPARE(terminal_.takeLog(), QString());
        complete(RestClass::kUserInOutLog, 1000, QVariant::fromValue(report));
        complete(RestClass::kUserEnroll, 2000, QVariant::fromValue(Parameter_UserData{}));
        QCOMPARE(int(as<UserReported>(terminal_.payloads.last()).resultCode), 2000);
        complete(RestClass::kUserEnroll, 70000, QVariant::fromValue(Parameter_UserData{}));
        QCOMPARE(int(as<UserReported>(terminal_.payloads.last()).resultCode), 0xFFFF);
        QCOMPARE(terminal_.takeLog(), QStringLiteral("2044(0,0)68 2042(0,0)140 2042(0,0)140"));
    }

    void theServiceReadsWhatIsSet() {
        const QStringList told =
            QStringLiteral(
                "DeviceMode setup.operation DoorOpenDuration setup.doorOpenDuration "
                "RelayType setup.relayType RelayUse setup.relayUse SyncTime setup.syncTime "
                "TamperSwitch setup.tamperSwitch AuthMethod registration.authMethod "
                "AutoGeneratedUserID registration.autoId "
                "AutomaticUserApproval registration.syncAutoZone "
                "GlassesOption registration.wearGlasses SelectUserLevel registration.userLevel "
                "UseQuickRegistraion registration.on SaveThumbnail face.saveThumbnail "
                "SaveUnregisteredAttempts face.saveUnregistered SecurityLevel face.securityLevel "
                "UseThumbnail face.useThumbnail Brightness screen.brightness "
                "MenuTimeout screen.menuTimeout SleepMode screen.sleepMode "
                "StandByMode screen.standbyMode StatusLed screen.statusLed "
                "AuthFailureAlarm sound.recognitionFailSound UseManager network.useManager")
                .split(QLatin1Char(' '));
        const Bytes menu = distinct("_gui_menu_");
        const QByteArray json =
            QJsonDocument(terminal_routes::deviceStatus(as<_gui_menu_>(menu.bytes), QDateTime()))
                .toJson(QJsonDocument::Compact);
        for (int i = 0; i < told.size(); i += 2) {
            const quint8 value = static_cast<quint8>(menu.field(told[i + 1])[0]);
            const QString text = QStringLiteral("\"%1\":\"%2\"").arg(told[i]).arg(value);
            QVERIFY2(json.contains(text.toLatin1()), qPrintable(text));
        }
        _gui_menu_ versions{};
        setFieldText(versions.firmwareVersion, QStringLiteral("1"));
        setFieldText(versions.kernelVersion, QStringLiteral("2"));
        setFieldText(versions.mainBoardVersion, QStringLiteral("3"));
        setFieldText(versions.ioBoardVersion, QStringLiteral("4"));
        setFieldText(versions.serial, QStringLiteral("5"));
        QCOMPARE(terminal_routes::deviceStatus(versions, QDateTime())
                     .value(QStringLiteral("DeviceInfo"))
                     .toObject(),
                 ::json("{'FW_version':'1','Kernel_version':'2','HW_Main_version':'3',"
                        "'HW_IO_version':'4','Serial':'5','Program_version':'" +
                        QByteArray(programVersion()) + "'}"));
    }

    void eventsAreReported() {
        const Bytes event = distinct("GUI_LOGDATA");
        const FR21_Parameter report = event_reports::accessEvent(as<GUI_LOGDATA>(event.bytes));
        verifyCarried({"EventReported", bytesOf(report.record)}, event);
        QCOMPARE(told(RestClass::kUserInOutLog, QVariant::fromValue(report)),
                 json("{'inoutInfo':{'authType':'54','inoutMode':'55','manageMode':'56',"
                      "'eventStatusCd':'57','payNum':'58','authTime':'2060-61-62 63:64:65',"
                      "'cardInfo':{'cardNo':'3333333333333333','cardType':'52','reissueNo':'53',"
                      "'nationCd':'kr'},'faceInfrared':{'authScore':'59','infImg':''},"
                      "'faceVisible':{'visImg':''}}}"));
    }

    void enrolledUsersAreReported() {
        const Bytes info{"info_s", distinct("_gui_user_").bytes + QByteArray(64, 'x') +
                                       QByteArray(64, 'y') + "vw"};
        const Parameter_UserData report = event_reports::enrolledUser(as<info_s>(info.bytes));
        verifyCarried({"UserReported", bytesOf(report.record)}, info);
        QCOMPARE(told(RestClass::kUserEnroll, QVariant::fromValue(report)),
                 json("{'userInfo':{'userLevel':'52','authType':'51','registTime':'" +
                      QByteArray(20, '>') + "','cardInfo':{'cardNo':'" + QByteArray(16, '<') +
                      "','cardType':'57','reissueNo':'58','nationCd':';;;;','cardTemplate':'" +
                      QByteArray(128, '=') + "'},'user':{'name':'" + QByteArray(100, '2') +
                      "'},'faceVisible':{'visImg':''},'templateFile':'" + QByteArray(64, 'y') +
                      "','autoEnrollment':'118','removeUserData':'119'}}"));
    }

    /// From the request by way of the disk to the controller, with texts that have to be wrapped.
    void aSentUserArrivesWhole() {
        auto sent = user_routes::decodeUserDataSend(
            R"({"userInfo":{"registTime":"2031-01-02 03:04:05","authType":4,"userLevel":"0",)"
            R"("sensivity":"3","timeSchedule":"a\\n\n\r\\홍\t\\","restrictTime":"\n",)"
            R"("templateFile":"x\u0000y","user":{"name":"길동"},"cardInfo":{"cardNo":"123456",)"
            R"("cardTemplate":"template","cardType":"7","nationCd":"kr","reissueNo":"8"}}})");
        QCOMPARE(sent.code, 1000);
        QVERIFY(CommandFolder().writeAdd(sent.value.user, "jpg"));
        const auto command =
            CommandFolder::named(TestRoot::namesIn(CommandFolder::directory()).value(0));
        QVERIFY(command && command->kind == CommandFolder::Kind::Add);
        const auto taken = CommandFolder::takeUser(*command);
        QVERIFY(taken.has_value());
        QCOMPARE(taken->templateFile, QString(QLatin1String("x\0y", 3)));
        commands_.enrolUser(QVariant::fromValue(*taken));
        QCOMPARE(terminal_.takeLog(), QStringLiteral("1927(0,0)486"));

        _gui_user_ user{};
        for (const auto field : {&_gui_user_::userId, &_gui_user_::customerId})
            setFieldText(user.*field, QStringLiteral("123456"));
        setFieldText(user.cardNumber, QStringLiteral("123456"));
        setFieldText(user.name, QStringLiteral("길동"));
        user.authMethod = 4;
        user.facePresent = user.cardPresent = 1;
        user.cardType = 7;
        user.reissueNumber = 8;
        setFieldText(user.nationCode, QStringLiteral("kr"));
        setFieldText(user.cardTemplate, QStringLiteral("template"));
        setFieldText(user.registrationTime, QStringLiteral("2031-01-02 03:04:05"));
        setFieldText(user.timeSchedule, QStringLiteral("a\\n\n\r\\홍\t\\"));
        setFieldText(user.restrictTime, QStringLiteral("\n"));
        setFieldText(user.picture, QStringLiteral("123456.jpg"));
        user.sensitivity = 3;
        user.origin = 1;
        QCOMPARE(terminal_.payloads.last().toHex(), bytesOf(user).toHex());
    }

    void deviceSettingsChangeOnlyWhatIsGiven() {
        _gui_menu_ before = managedBy(5);
        before.screen.brightness = 7;
        const auto setup = terminal_routes::decodeDeviceSet(
            device(R"("DoorOpenDuration":"20","DeviceNo":4294967295,"AdminPassword":"00001234",)"
                   R"("QuickRegistration":{"UseQuickRegistraion":1},"Environment":)"
                   R"({"ScreenSettings":{"MenuTimeout":0,"SleepMode":"180"}},)"
                   R"("CommType":{"IPAddress":"10.0.0.9"})"));
        QCOMPARE(setup.code, 1000);
        _gui_menu_ after = before;
        setup.value.applyTo(after);
        _gui_menu_ expected = managedBy(9);
        expected.screen.brightness = 7;
        expected.setup.doorOpenDuration = 20;
        expected.setup.deviceNumber = 0xFFFFFFFF;
        memcpy(expected.setup.adminPassword, "00001234", 8);
        expected.setup.quickRegistration = expected.registration.on = 1;
        expected.screen.menuTimeout = expected.screen.sleepMode = 3;
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
        QVERIFY(!QFile::exists(root_.path("/mnt/data")));
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

    void recordsOneBehindTheOther() {
        const QByteArray bytes("\1\2\3\4\5\6\7", 7);
        const auto ranges = [&bytes](int length) {
            return DeviceMessage{1, 0, 0, static_cast<quint16>(length), bytes.constData()}
                .records<_byte4_time_se_>();
        };
        QCOMPARE(int(ranges(3).size()), 0);
        QCOMPARE(int(ranges(7).size()), 1);
        QCOMPARE(int(ranges(7).front().endMinute), 4);
        QCOMPARE(int(DeviceMessage{}.records<quint32>().size()), 0);
    }

 private:
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
    /// What the service gets with a command.
    QJsonObject told(int command, const QVariant& data) {
        RestClass client(cloud_, nullptr);
        FakeService service;
        cloud_.setSettings(service.settings());
        client.SendCommand(command, data);
        [&] { QTRY_COMPARE(service.requests.size(), 1); }();
        return QJsonDocument::fromJson(service.requests.value(0).body).object();
    }

    TestRoot root_;
    FakeHost cloud_;
    FakeTerminal terminal_;
    ManagementCommands commands_{cloud_, terminal_};
};

QTEST_GUILESS_MAIN(RecordsTest)
#include "records_test.moc"
