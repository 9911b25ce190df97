#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

#include "cloud/command_folder.h"
#include "cloud/event_reports.h"
#include "cloud/management_commands.h"
#include "cloud/rest_client.h"
#include "cloud_test_support.h"
#include "link/device_message.h"

namespace {

template <typename Record>
Record recordOf(const QByteArray& payload) {
    Record record;
    std::memcpy(&record, payload.constData(), sizeof record);
    return record;
}

}  // namespace

class CloudManagementTest : public QObject {
    Q_OBJECT

 private:
    QTemporaryDir root_;
    std::unique_ptr<FakeHost> cloud_;
    std::unique_ptr<FakeTerminal> terminal_;
    std::unique_ptr<ManagementCommands> commands_;

 private slots:
    void initTestCase() { qputenv("ZEL_ROOT", root_.path().toLocal8Bit()); }
    void init() {
        cloud_ = std::make_unique<FakeHost>();
        terminal_ = std::make_unique<FakeTerminal>();
        commands_ = std::make_unique<ManagementCommands>(*cloud_, *terminal_);
        QDir(root_.path() + QStringLiteral("/mnt")).removeRecursively();
    }

    void clockIsSetFromAnyPlausibleTime() {
        const auto set = [this](const char* date, const char* time) {
            commands_->setTime(
                QVariant::fromValue(FR01_Parameter{QLatin1String(date), QLatin1String(time)}));
        };
        set("2031-12-24", "23:59:58");
        QCOMPARE(terminal_->takeLog(), QStringLiteral("1953(1,0)6"));
        QCOMPARE(terminal_->payloads.last(), QByteArray("\x1f\x0c\x18\x17\x3b\x3a"));
        set("2024-2-9", "1:2:3");
        QCOMPARE(terminal_->takeLog(), QStringLiteral("1953(1,0)6"));
        QCOMPARE(terminal_->payloads.last(), QByteArray("\x18\x02\x09\x01\x02\x03"));
        set("2031-2-30", "23:59:58");
        set("2031-12-x", "23:59:58");
        set("2031-12-24", "23:x:58");
        set("2031-12-24", "");
        set("2031-12-24", "23:59:60");
        set("24-12-2031", "23:59:58");
        commands_->setTime(QVariant(5));
        QCOMPARE(terminal_->takeLog(), QString());
    }

    void systemActionsSendTheirCommands() {
        const QPair<const char*, const char*> actions[] = {
            {"rebootDevice", "1958(0,0)0"},        {"deleteLogData", "1957(0,0)0"},
            {"deleteSettingData", "1957(1,0)0"},   {"deleteAllData", "1957(2,0)0"},
            {"deleteAllUsers", "1932(3,1)0"},      {"deleteGeneralUsers", "1932(0,1)0"},
            {"deleteFaceonlyUsers", "1932(4,1)0"}, {"deleteAdmin", "1932(1,1)0"},
        };
        for (const auto& [word, frame] : actions) {
            commands_->setSystem(QVariant::fromValue(SystemEvent_Parameter{QLatin1String(word)}));
            const bool users = QByteArray(frame).startsWith("1932");
            QCOMPARE(terminal_->takeLog(),
                     QStringLiteral("stayWindow %1%2 liveWindow")
                         .arg(users ? QStringLiteral("ListItem_Synchronizing ") : QString(),
                              QLatin1String(frame)));
        }
    }

    void deviceSettingsGoOutInOrder() {
        terminal_->menu.sound.volume = 6;
        Device_Setup_Parameter setup;
        setup.time = QStringLiteral("2031-12-24 23:59:58");
        setup.managerPort = 8081;
        setup.bytes.push_back({offsetof(_gui_menu_, screen.brightness), 9});
        commands_->setDevice(QVariant::fromValue(setup));
        QCOMPARE(terminal_->takeLog(),
                 QStringLiteral("1981(2,0)27 1953(1,0)6 1982(1,0)7 1950(1,0)5 1951(1,0)7 "
                                "1954(1,0)3 ip 1986(4,0)23 menu timers"));
        QCOMPARE(int(recordOf<ServiceNetwork>(terminal_->payloads[6]).managerPort), 8081);
        QCOMPARE(terminal_->menu.screen.brightness, 9);
        QCOMPARE(terminal_->menu.sound.volume, 6);
    }

    void usersAreAskedForDeletedStoredAndEnrolled() {
        const auto card = QVariant::fromValue(FR33_3_Parameter{QStringLiteral("1234567")});
        DoReceiveUserData user;
        user.cardNo = QStringLiteral("1234567");
        user.name = QString(60, QChar(0xAC00));
        user.authType = QStringLiteral("300");
        user.userLevel = QStringLiteral("2");
        user.picture = QStringLiteral("1234567.jpg");

        commands_->openDoor();
        commands_->getUser(card);
        commands_->deleteUser(card);
        commands_->enrolUser(QVariant::fromValue(user));
        commands_->runKioskEnrolMode(QVariant::fromValue(user));
        QCOMPARE(terminal_->takeLog(),
                 QStringLiteral("2036(0,0)0 2026(0,0)16 stayWindow ListItem_Synchronizing "
                                "1931(1,0)16 liveWindow 1927(0,0)486 user menu enrol"));
        QCOMPARE(terminal_->payloads[1], QByteArray("1234567") + QByteArray(9, '\0'));
        const auto record = recordOf<_gui_user_>(terminal_->payloads[3]);
        QCOMPARE(fieldText(record.name), QString(33, QChar(0xAC00)));
        QCOMPARE(record.authMethod, 2);  // there is no 300
        QCOMPARE(terminal_->user.origin, 2);

        for (const auto slot : {&ManagementCommands::getUser, &ManagementCommands::deleteUser,
                                &ManagementCommands::enrolUser, &ManagementCommands::setDevice,
                                &ManagementCommands::setSystem})
            (commands_.get()->*slot)(QVariant(QStringLiteral("nothing")));
        QCOMPARE(terminal_->takeLog(), QString());
    }

    void confirmedReportsGoBackToTheController() {
        QDir().mkpath(CommandFolder::directory());
        QFile picture(CommandFolder::directory() + QStringLiteral("face.jpg"));
        QVERIFY(picture.open(QIODevice::WriteOnly));
        picture.write("abc");
        picture.close();
        GUI_LOGDATA event{};
        event.number = 77;
        event.year = 31;
        event.month = event.day = 2;
        setFieldText(event.visiblePicture, QStringLiteral("face.jpg"));
        setFieldText(event.infraredPicture, QStringLiteral("../Images/face.jpg"));
        const FR21_Parameter report = event_reports::accessEvent(event);
        QCOMPARE(report.visImg, QStringLiteral("YWJj"));
        QCOMPARE(report.infImg, QString());
        QCOMPARE(report.authTime, QStringLiteral("2031-02-02 00:00:00"));

        const auto complete = [this](int command, int code, const QVariant& data) {
            commands_->completed(QVariant::fromValue(ProcIDX{command, 0, code, data}));
        };
        complete(RestClass::kUserInOutLog, 9999, QVariant::fromValue(report));
        complete(RestClass::kUserDeleted, 1000, QVariant::fromValue(FR36_Parameter{}));
        complete(RestClass::kUserEnroll, 1000, QVariant());
        QCOMPARE(terminal_->takeLog(), QString());
        complete(RestClass::kUserInOutLog, 1000, QVariant::fromValue(report));
        complete(RestClass::kUserEnroll, 2000, QVariant::fromValue(Parameter_UserData{}));
        QCOMPARE(terminal_->takeLog(), QStringLiteral("2044(0,0)68 2042(0,0)140"));
        QCOMPARE(int(recordOf<UserReported>(terminal_->payloads[1]).resultCode), 2000);
    }
};

QTEST_GUILESS_MAIN(CloudManagementTest)
#include "cloud_management_test.moc"
