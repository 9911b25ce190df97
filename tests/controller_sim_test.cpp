#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

#include "link/command_code.h"
#include "link/device_message.h"
#include "link/device_records.h"
#include "link/frame.h"
#include "link/frame_parser.h"
#include "sim/common/firmware_image.h"
#include "sim/common/line_buffer.h"
#include "sim/controller/controller_sim.h"
#include "sim/controller/work_status.h"

namespace {

struct Received {
    quint16 code;
    quint8 p1;
    quint8 p2;
    QByteArray payload;
};

/// The terminal's side of the link, reduced to what it sends and gets.
class Terminal {
 public:
    explicit Terminal(quint16 port)
        : parser_([this](quint16 code, quint8 p1, quint8 p2, quint16 length, const char* payload) {
              frames.append({code, p1, p2, QByteArray(payload, length)});
          }) {
        QObject::connect(&socket, &QTcpSocket::readyRead, &socket, [this] {
            while (socket.bytesAvailable() > 0) {
                const qint64 got =
                    socket.read(parser_.writePosition(), static_cast<qint64>(parser_.writeSpace()));
                parser_.consume(static_cast<std::size_t>(got));
            }
        });
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    }

    void send(quint16 code, quint8 p1 = 0, quint8 p2 = 0, const QByteArray& payload = {}) {
        socket.write(
            Frame::build(code, p1, p2, static_cast<quint16>(payload.size()), payload.constData()));
    }
    template <typename Record>
    void sendRecord(quint16 code, quint8 p1, const Record& record) {
        send(code, p1, 0, QByteArray(reinterpret_cast<const char*>(&record), sizeof record));
    }

    /// Whether a frame of @p code has come; the last one is kept in `last`.
    bool has(quint16 code) {
        for (const Received& frame : qAsConst(frames)) {
            if (frame.code == code)
                last = frame;
        }
        return last.code == code;
    }
    template <typename Record>
    Record lastRecord() const {
        Record record{};
        memcpy(&record, last.payload.constData(), qMin<size_t>(last.payload.size(), sizeof record));
        return record;
    }
    void forget() {
        frames.clear();
        last = {};
    }

    QTcpSocket socket;
    QVector<Received> frames;
    Received last{};

 private:
    FrameParser parser_;
};

}  // namespace

class ControllerSimTest : public QObject {
    Q_OBJECT

 private slots:
    void init();
    void greetingIsAnsweredAlsoByteByByte();
    void savesAreStoredAndSurviveARestart();
    void brokenStateGivesDefaults();
    void garbageFromTheTerminalIsHarmless();
    void aNewTerminalReplacesTheOldOne();
    void wordsThatMakeNoSense_data();
    void wordsThatMakeNoSense();
    void controlPortAnswersEveryLine();
    void statusFollowsThePeriods_data();
    void statusFollowsThePeriods();
    void attendanceWaitsForTheChoice();
    void mealsAreCountedAndTakenOnce();
    void eventsAreReportedUntilConfirmed();
    void usersGoToTheServiceAndComeFromIt();
    void aBrokenUserTableIsPutAside();
    void requestsMeetTrouble();
    void storesAreFilled();
    void firmwareRestartsTheTerminal();
    void helpNamesTheValues();

 private:
    QString word(const char* line) { return sim_->execute(QString::fromUtf8(line)); }
    void start() { sim_ = std::make_unique<ControllerSim>(0, 0, folder_->path()); }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<ControllerSim> sim_;
};

void ControllerSimTest::init() {
    sim_.reset();
    folder_ = std::make_unique<QTemporaryDir>();
    start();
    QVERIFY(sim_->listening());
}

void ControllerSimTest::greetingIsAnsweredAlsoByteByByte() {
    for (int split = 0; split < 2; ++split) {
        Terminal terminal(sim_->port());
        terminal.send(command::Greeting);
        QTRY_COMPARE(terminal.frames.size(), 3);
        QCOMPARE(terminal.frames[0].code, quint16(command::Settings));
        QCOMPARE(terminal.frames[0].payload.size(), 380);
        QCOMPARE(terminal.frames[1].code, quint16(command::SystemStatus));
        QCOMPARE(terminal.frames[2].code, quint16(command::SelfCheck));
        QCOMPARE(terminal.frames[2].payload, QByteArray(4, '\0'));

        // Noise in between costs no frame.
        terminal.forget();
        sim_->execute(QStringLiteral("noise"));
        sim_->execute(QStringLiteral("fault touch tamper"));
        QTRY_VERIFY(terminal.has(command::SelfCheck));
        QCOMPARE(terminal.last.payload, QByteArray::fromHex("44000000"));
        sim_->execute(QStringLiteral("fault none"));
        sim_->execute(QStringLiteral("split"));
    }
}

void ControllerSimTest::savesAreStoredAndSurviveARestart() {
    const ScreenBlock screen{9, 1, 1, 0, 3, 2, 1};
    const OperationSettings operation{1, 1, 0, 1, 2, 7, 1, 0, {1, 2, 3, 4}, {5, 6, 7, 8}, 1, 1};
    const OperationTimes times{{6, 0, 9, 0}, {11, 0, 13, 0}, {17, 0, 19, 0}, {22, 0, 2, 0}, 1};
    const ServiceNetwork network{
        1, {10, 0, 0, 9}, {255, 0, 0, 0}, {10, 0, 0, 1}, {1, 1, 1, 1}, {10, 0, 0, 5}, 8443};
    {
        Terminal terminal(sim_->port());
        terminal.sendRecord(command::SaveScreenSettings, 1, screen);
        terminal.sendRecord(command::SaveOperationSettings, 1, operation);
        terminal.sendRecord(command::SaveOperationTimes, 1, times);
        terminal.sendRecord(command::SaveNetwork, 4, network);
        terminal.send(command::SaveFaceSettings, 1, 0, "xx");
        QTRY_VERIFY(terminal.has(command::FaceSettingsSaved));
        QCOMPARE(int(terminal.last.p1), 1);
        for (const quint16 code : {command::ScreenSettingsSaved, command::OperationSettingsSaved,
                                   command::NetworkSaved}) {
            QVERIFY(terminal.has(code));
            QCOMPARE(int(terminal.last.p1), 0);
        }
    }
    QVERIFY(
        sim_->execute(QStringLiteral("settings setup.language 1")).startsWith(QLatin1String("ok")));
    QVERIFY(sim_->execute(QStringLiteral("settings customerId 빌딩 7"))
                .startsWith(QLatin1String("ok")));

    sim_.reset();
    start();
    Terminal terminal(sim_->port());
    terminal.send(command::Greeting);
    QTRY_VERIFY(terminal.has(command::Settings));
    const auto menu = terminal.lastRecord<_gui_menu_>();
    QVERIFY(memcmp(&menu.screen, &screen, sizeof screen) == 0);
    QVERIFY(memcmp(&menu.operation, &operation, 16) == 0);
    QVERIFY(memcmp(&menu.operation.weekdayIn, &times, sizeof times) == 0);
    QCOMPARE(int(menu.operation.saveRecognitionFail), 1);
    QCOMPARE(int(menu.operation.mealCountView), 1);
    QCOMPARE(int(menu.network.useManager), 1);
    QVERIFY(memcmp(menu.network.own.address, network.address, sizeof network - 1) == 0);
    QCOMPARE(int(menu.setup.language), 1);
    QCOMPARE(QString::fromUtf8(menu.customerId), QStringLiteral("빌딩 7"));
}

void ControllerSimTest::brokenStateGivesDefaults() {
    const _gui_menu_ defaults = sim_->settings();
    for (const QByteArray& content : {QByteArray("{ \"settings\": "), QByteArray(3000000, 'x'),
                                      QByteArray("{\"settings\":{\"setup.language\":\"900\"}}")}) {
        sim_.reset();
        QVERIFY(QDir(folder_->path()).mkpath(QStringLiteral("sim")));
        QFile file(folder_->filePath(QStringLiteral("sim/controller.json")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        start();
        QVERIFY(memcmp(&sim_->settings(), &defaults, sizeof defaults) == 0);
    }
}

void ControllerSimTest::garbageFromTheTerminalIsHarmless() {
    Terminal terminal(sim_->port());
    QByteArray garbage;
    for (int i = 0; i < 100000; ++i)
        garbage.append(static_cast<char>((i * 7919) >> 3));
    // The garbage may end inside of something that looks like a frame; the rest fills that up.
    garbage.append(QByteArray(2200, '\0'));
    terminal.socket.write(garbage);
    for (quint16 code = 1901; code <= 2047; ++code) {
        terminal.send(code, 255, 255);
        terminal.send(code, 255, 255, QByteArray(1, '\xFF'));
        terminal.send(code, 255, 255, QByteArray(2092, '\xFF'));
    }
    terminal.send(65535);
    terminal.forget();
    terminal.send(command::Greeting);
    QTRY_VERIFY(terminal.has(command::SelfCheck));

    // Half a frame, then gone: the next terminal starts afresh.
    terminal.socket.write(Frame::build(command::SaveScreenSettings, 1, 0, 7, "1234567").left(12));
    QTRY_COMPARE(terminal.socket.bytesToWrite(), qint64(0));
    terminal.socket.abort();
    QTRY_VERIFY(!sim_->terminalConnected());
    Terminal next(sim_->port());
    next.send(command::Greeting);
    QTRY_VERIFY(next.has(command::SelfCheck));
}

void ControllerSimTest::aNewTerminalReplacesTheOldOne() {
    Terminal first(sim_->port());
    QTRY_VERIFY(sim_->terminalConnected());
    Terminal second(sim_->port());
    QTRY_COMPARE(first.socket.state(), QAbstractSocket::UnconnectedState);
    second.send(command::Greeting);
    QTRY_VERIFY(second.has(command::SelfCheck));

    QCOMPARE(sim_->execute(QStringLiteral("quit-gui")), QStringLiteral("ok"));
    QTRY_VERIFY(second.has(command::Quit));
    sim_->execute(QStringLiteral("drop"));
    QTRY_COMPARE(second.socket.state(), QAbstractSocket::UnconnectedState);
}

void ControllerSimTest::wordsThatMakeNoSense_data() {
    QTest::addColumn<QString>("line");
    for (const char* line : {"nonsense",
                             "settings nothing 1",
                             "settings reserved1 1",
                             "settings setup.language 256",
                             "settings setup.language -1",
                             "settings operation.weekdayIn 8:00~9:00",
                             "settings operation.weekdayIn 25:00~26:00",
                             "settings network.own.dns 1.2.3",
                             "settings setup.adminPassword 123456789",
                             "status",
                             "status 256",
                             "fault x",
                             "frame",
                             "frame 70000 0 0",
                             "frame 3000 0 0 0",
                             "frame 3000 0 0 xy",
                             "refuse",
                             "refuse 3000",
                             "refuse 1905",
                             "refuse 1951 256",
                             "silent 1951 1",
                             "delay 1951",
                             "delay 1951 -1",
                             "lose-link-at x",
                             "users -1",
                             "users 10001",
                             "logs 100001",
                             "restart-gui",
                             "screen",
                             "help nonsense"})
        QTest::newRow(line) << QString::fromLatin1(line);
    QTest::newRow("huge line") << QString(LineBuffer::kMaxLine + 1, QLatin1Char('a'));
    QTest::newRow("more than a frame")
        << QStringLiteral("frame 3000 0 0 ") + QString(2093 * 2, QLatin1Char('0'));
}

void ControllerSimTest::wordsThatMakeNoSense() {
    QFETCH(QString, line);
    const _gui_menu_ before = sim_->settings();
    const QString answer = sim_->execute(line);
    QVERIFY2(answer.startsWith(QLatin1String("error ")), qPrintable(answer));
    QVERIFY(memcmp(&sim_->settings(), &before, sizeof before) == 0);
}

void ControllerSimTest::controlPortAnswersEveryLine() {
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), sim_->controlPort());
    client.write("status 3\r\n\n" + QByteArray(1000000, 'x') + "\n\xFF\xFE\nstat");
    client.write("us 4\n");
    QByteArray answers;
    QTRY_COMPARE((answers += client.readAll()).count('\n'), 4);
    const QList<QByteArray> lines = answers.split('\n');
    QCOMPARE(lines[0], QByteArray("ok"));
    QVERIFY(lines[1].startsWith("error the line"));
    QVERIFY(lines[2].startsWith("error"));
    QCOMPARE(lines[3], QByteArray("ok"));

    QSignalSpy quit(sim_.get(), &ControllerSim::quitRequested);
    client.write("quit\n");
    QTRY_COMPARE(quit.count(), 1);
}

void ControllerSimTest::statusFollowsThePeriods_data() {
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("now");
    QTest::addColumn<int>("status");
    // 2026-03-13 is a Friday; the factory settings hold the attendance times.
    QTest::newRow("before") << 1 << "2026-03-13T07:59" << 0;
    QTest::newRow("in") << 1 << "2026-03-13T08:00" << 1;
    QTest::newRow("in ends") << 1 << "2026-03-13T09:30" << 0;
    QTest::newRow("out") << 1 << "2026-03-13T21:59" << 2;
    QTest::newRow("Saturday in") << 1 << "2026-03-14T09:45" << 1;
    QTest::newRow("Saturday out") << 1 << "2026-03-14T17:45" << 2;
    QTest::newRow("Sunday as Saturday") << 1 << "2026-03-15T09:45" << 1;
    QTest::newRow("access only") << 0 << "2026-03-13T08:00" << 0;
    QTest::newRow("breakfast") << 2 << "2026-03-13T08:00" << 1;
    QTest::newRow("lunch on a Sunday") << 2 << "2026-03-15T12:00" << 2;
    QTest::newRow("dinner is off") << 2 << "2026-03-13T18:00" << 0;
    QTest::newRow("supper") << 2 << "2026-03-13T23:59" << 4;
    QTest::newRow("supper past midnight") << 2 << "2026-03-14T01:59" << 4;
    QTest::newRow("supper ends") << 2 << "2026-03-14T02:00" << 0;
}

void ControllerSimTest::statusFollowsThePeriods() {
    QFETCH(int, operation);
    QFETCH(QString, now);
    QFETCH(int, status);
    _gui_menu_ menu = factorySettings();
    menu.setup.operation = static_cast<quint8>(operation);
    if (operation == Operation::Meals) {
        menu.operation.saveSimpleAccess = 1;  // dinner off
        menu.operation.weekdayIn = {7, 0, 9, 0};
        menu.operation.weekdayOut = {11, 30, 13, 30};
        menu.operation.saturdayIn = {17, 30, 19, 30};
        menu.operation.saturdayOut = {22, 0, 2, 0};
    }
    const QDateTime time = QDateTime::fromString(now, Qt::ISODate);
    QCOMPARE(work::statusAt(menu, time), status);
    const QDateTime next = work::nextChange(menu, time);
    QVERIFY(next > time && time.secsTo(next) <= 24 * 3600);
    QCOMPARE(work::statusAt(menu, next.addSecs(-60)), status);
}

void ControllerSimTest::attendanceWaitsForTheChoice() {
    Terminal terminal(sim_->port());
    QTRY_VERIFY(sim_->terminalConnected());
    word("time 2026-03-13 07:00");  // whatever the time is now, the status changes
    word("time 2026-03-13 08:00");
    QTRY_VERIFY(terminal.has(command::SystemStatus) && terminal.last.p1 == 1);
    QFile clock(folder_->filePath(QStringLiteral("sim/clock")));
    QVERIFY(clock.open(QIODevice::ReadOnly));
    const QDateTime shown =
        QDateTime::currentDateTime().addSecs(clock.readAll().trimmed().toLongLong());
    QVERIFY(qAbs(shown.secsTo(sim_->now())) <= 1);
    terminal.forget();

    // A camera that is off, or takes a picture for an enrolment, sees nobody.
    word("track on");
    for (const quint8 mode : {0, 2}) {
        terminal.send(command::RecognitionMode, mode);
        terminal.send(command::CameraRun, mode == 0 ? 0 : 1);
        terminal.send(command::Greeting);
        QTRY_VERIFY(terminal.has(command::SelfCheck));
        QVERIFY(word("face 01023456789").startsWith(QLatin1String("error")));
        QVERIFY(!terminal.has(command::TrackingBox));
        terminal.forget();
    }
    terminal.send(command::RecognitionMode, 1);
    QTRY_VERIFY(terminal.has(command::TrackingBox));
    word("track off");
    terminal.forget();
    word("face 01023456789");
    QTRY_VERIFY(terminal.has(command::Recognised));
    auto result = terminal.lastRecord<RecognitionResult>();
    QCOMPARE(QString::fromUtf8(result.name), QStringLiteral("김서연"));
    QCOMPARE(int(result.result), 0);
    QCOMPARE(int(result.askAttendance), 1);
    QVERIFY(QFile::exists(folder_->filePath(QStringLiteral("user/01023456789.jpg"))));
    QVERIFY(terminal.has(command::TrackingBox));
    QCOMPARE(int(terminal.lastRecord<TrackedFace>().state), 2);
    QVERIFY(!terminal.has(command::DoorOpened));
    terminal.send(command::RecognitionKey, 17);
    QTRY_VERIFY(terminal.has(command::DoorOpened));
    terminal.send(command::RecognitionKey, 18);  // a second choice is none

    // Whoever chooses nothing is recorded by the time of day; the unknown are recorded too.
    word("card 10000002");
    word("face unknown");
    QTRY_VERIFY(terminal.has(command::RecognitionFailed));
    word("settings operation.attendanceMode 4");
    terminal.forget();
    word("card 10000002");
    QTRY_VERIFY(terminal.has(command::Recognised));
    result = terminal.lastRecord<RecognitionResult>();
    QCOMPARE(int(result.askAttendance), 0);
    QCOMPARE(int(result.attendanceEvent), 18);
    terminal.forget();
    word("card 10000006");  // may come at night only
    QTRY_VERIFY(terminal.has(command::Recognised));
    QCOMPARE(int(terminal.lastRecord<RecognitionResult>().result), 1);

    const QStringList logs = word("logs").split(QLatin1Char('\n'));
    QCOMPARE(logs.size(), 6);
    QVERIFY(logs[4].contains(QLatin1String("01023456789 mode 2 accepted")));
    QVERIFY(logs[3].contains(QLatin1String("01098765432 mode 1 accepted")));
    QVERIFY(logs[2].contains(QLatin1String("mode 0 refused")));
    QVERIFY(logs[1].contains(QLatin1String("01098765432 mode 3 accepted")));
    QVERIFY(logs[0].contains(QLatin1String("01077778888 mode 3 refused")));
}

void ControllerSimTest::mealsAreCountedAndTakenOnce() {
    Terminal terminal(sim_->port());
    QTRY_VERIFY(sim_->terminalConnected());
    for (const char* line :
         {"settings operation.saveSimpleAccess 0", "settings operation.weekdayOut 11:30~13:30",
          "settings setup.operation 2", "time 2026-03-13 12:00"})
        QVERIFY(word(line).startsWith(QLatin1String("ok")));

    terminal.send(command::RecognitionMode, 1);
    terminal.send(command::CameraRun, 1);
    QTRY_VERIFY(word("face 01023456789").startsWith(QLatin1String("ok")));
    QTRY_VERIFY(terminal.has(command::Recognised));
    terminal.send(command::RecognitionKey, 33, 0);  // no meals: not a payment
    terminal.send(command::RecognitionKey, 33, 100);
    terminal.send(command::RecognitionKey, 35);
    terminal.send(command::RecognitionKey, 33, 3);
    terminal.send(command::RecognitionKey, 32, 1);  // paid already
    const auto lunches = [&] {
        return terminal.has(command::SystemStatus) ? terminal.lastRecord<StatusReport>().meals.lunch
                                                   : 0;
    };
    QTRY_COMPARE(lunches(), 3U);

    const auto resultOf = [&](const char* line) {
        terminal.forget();
        word(line);
        [&] { QTRY_VERIFY(terminal.has(command::Recognised)); }();
        return int(terminal.lastRecord<RecognitionResult>().result);
    };
    QCOMPARE(resultOf("face 01023456789"), 4);
    word("settings operation.doorOpenSetting 1");
    QCOMPARE(resultOf("face 01023456789"), 0);
    word("time 2026-03-13 10:30");
    QCOMPARE(resultOf("face 01098765432"), 1);
    word("settings operation.doorOpenSetting 0");
    word("time 2026-03-14 12:00");
    QTRY_COMPARE(lunches(), 0U);
    QCOMPARE(resultOf("face 01023456789"), 0);
}

void ControllerSimTest::eventsAreReportedUntilConfirmed() {
    Terminal terminal(sim_->port());
    QTRY_VERIFY(sim_->terminalConnected());
    word("settings setup.operation 0");
    word("settings network.useManager 1");
    word("card 10000001");
    word("card 10000002");
    QTRY_VERIFY(terminal.has(command::AccessEvent) &&
                terminal.lastRecord<GUI_LOGDATA>().number == 2);
    QCOMPARE(int(terminal.last.p1), 0);

    sim_.reset();
    start();
    Terminal again(sim_->port());
    again.send(command::AskUnsentLogs);
    for (quint32 number = 1; number <= 2; ++number) {
        QTRY_VERIFY(again.has(command::AccessEvent));
        QCOMPARE(int(again.last.p1), 1);
        QCOMPARE(again.lastRecord<GUI_LOGDATA>().number, number);
        again.forget();
        EventReported confirmed{};
        confirmed.number = number;
        again.sendRecord(command::EventReported, 0, confirmed);
    }
    again.send(command::AskUnsentLogs);
    again.send(command::AskUserCounts);
    QTRY_VERIFY(again.has(command::UserCountsAnswer));
    QCOMPARE(again.lastRecord<UserCounts>().all, 7U);
    QVERIFY(!again.has(command::AccessEvent));
}

void ControllerSimTest::usersGoToTheServiceAndComeFromIt() {
    Terminal terminal(sim_->port());
    const auto offered = [&terminal] {
        [&] { QTRY_VERIFY(terminal.has(command::UserEnrolled)); }();
        return fieldText(terminal.lastRecord<info_s>().user.userId);
    };
    const auto report = [&terminal](const QString& userId, quint16 result) {
        UserReported reported{};
        setFieldText(reported.userId, userId);
        reported.resultCode = result;
        terminal.forget();
        terminal.sendRecord(command::UserReported, 0, reported);
    };
    terminal.send(command::AskUnsentUsers);
    const QString oldest = offered();
    report(oldest, 0);  // the service was not reached
    terminal.send(command::AskUnsentUsers);
    QCOMPARE(offered(), oldest);
    report(oldest, 1000);
    QVERIFY(offered() != oldest);

    _gui_user_ user{};
    setFieldText(user.userId, QStringLiteral("77001122"));
    setFieldText(user.cardNumber, QStringLiteral("77001122"));
    setFieldText(user.picture, QStringLiteral("visitor.jpg"));
    terminal.forget();
    terminal.sendRecord(command::EnrolNetworkUser, 0, user);
    QTRY_VERIFY(terminal.has(command::SettingsChanged));
    QCOMPARE(terminal.lastRecord<_gui_menu_>().users.all, 8U);
    QVERIFY(QFile::exists(folder_->filePath(QStringLiteral("thumb/77001122.jpg"))));
    setFieldText(user.userId, QStringLiteral("../7"));
    terminal.sendRecord(command::EnrolNetworkUser, 0, user);
    terminal.send(command::AskUserData, 0, 0, QByteArray("77001122").leftJustified(16, '\0'));
    QCOMPARE(offered(), QStringLiteral("77001122"));

    terminal.send(command::DeleteUser, 1, 0, QByteArray("77001122").leftJustified(16, '\0'));
    terminal.send(command::DeleteUserGroup, 4, 1);
    QTRY_VERIFY(terminal.has(command::UserGroupDeleted));
    terminal.send(command::AskUserCounts);
    QTRY_VERIFY(terminal.has(command::UserCountsAnswer));
    const auto counts = terminal.lastRecord<UserCounts>();
    QCOMPARE(counts.all, 6U);
    QCOMPARE(counts.faceOnly, 0U);
    QVERIFY(!terminal.has(command::UserDeleteResult));
}

void ControllerSimTest::aBrokenUserTableIsPutAside() {
    sim_.reset();
    const QString path = folder_->filePath(QStringLiteral("db_user2/DB_userT.bin"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(5000, 'x'));
    file.close();
    start();
    QVERIFY(word("card 10000001").startsWith(QLatin1String("ok")));
    QCOMPARE(QFileInfo(path + QStringLiteral(".broken")).size(), qint64(5000));
}

void ControllerSimTest::requestsMeetTrouble() {
    Terminal terminal(sim_->port());
    QTRY_VERIFY(sim_->terminalConnected());
    ScreenBlock screen = sim_->settings().screen;
    const auto save = [&](quint8 brightness) {
        screen.brightness = brightness;
        terminal.forget();
        terminal.sendRecord(command::SaveScreenSettings, 1, screen);
        terminal.send(command::Greeting);
        [&] { QTRY_VERIFY(terminal.has(command::SelfCheck)); }();
    };
    const auto stored = [this] { return int(sim_->settings().screen.brightness); };
    const int before = stored();

    QCOMPARE(word("refuse 1951 9"), QStringLiteral("ok SaveScreenSettings"));
    word("silent 1951");
    save(1);
    QVERIFY(terminal.has(command::ScreenSettingsSaved));
    QCOMPARE(int(terminal.last.p1), 9);
    save(2);
    QVERIFY(!terminal.has(command::ScreenSettingsSaved));
    QCOMPARE(stored(), before);
    word("delay 1951 100");
    save(3);
    QVERIFY(!terminal.has(command::ScreenSettingsSaved));
    QTRY_VERIFY(terminal.has(command::ScreenSettingsSaved));
    QCOMPARE(stored(), 3);
    word("silent 1951");
    word("normal");
    save(4);
    QVERIFY(terminal.has(command::ScreenSettingsSaved));

    // Where the result stands differs.
    terminal.forget();
    word("refuse 1962");
    terminal.send(command::UsbImport, 2, 0, "/mnt/usb/ZEL01/x");
    QTRY_VERIFY(terminal.has(command::UsbImported));
    QCOMPARE(int(terminal.last.p1), 2);
    QCOMPARE(int(terminal.last.p2), 5);

    // What was asked for on a lost link is not answered on the next one.
    word("delay 1951 1000");
    word("lose-link-at 1957");
    save(5);
    terminal.send(command::Initialise, 1);
    QTRY_COMPARE(terminal.socket.state(), QAbstractSocket::UnconnectedState);
    Terminal next(sim_->port());
    word("delay 1905 1500");
    next.send(command::ScreenClosed);
    QTRY_VERIFY(next.has(command::ScreenClosedAnswer));
    QVERIFY(!next.has(command::ScreenSettingsSaved));
    QCOMPARE(stored(), 4);
}

void ControllerSimTest::storesAreFilled() {
    Terminal terminal(sim_->port());
    QTRY_VERIFY(sim_->terminalConnected());
    const UserCounts first = sim_->settings().users;
    QCOMPARE(word("users 9999"), QStringLiteral("ok 9999"));
    QCOMPARE(word("users 10000"), QStringLiteral("ok 10000"));
    QTRY_VERIFY(terminal.has(command::SettingsChanged) &&
                terminal.lastRecord<_gui_menu_>().users.all == 10000U);
    const UserCounts full = sim_->settings().users;
    QCOMPARE(full.general + full.admin + full.visitor, 10000U);
    QCOMPARE(full.admin, first.admin);
    const QStringList list = word("users").split(QLatin1Char('\n'));
    for (const char* script : {"[가-힣]", "[A-Za-z]", "[ぁ-んァ-ン一-龠]"})
        QVERIFY(list.filter(QRegularExpression(QString::fromUtf8(script))).size() > 1000);

    QCOMPARE(word("logs 5000"), QStringLiteral("ok 5000"));
    const QString newest = word("logs");
    QVERIFY(QDateTime::fromString(newest.section(QLatin1Char(' '), 1, 2),
                                  QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                .daysTo(QDateTime::currentDateTime()) < 7);
    QVERIFY(newest.contains(QLatin1String("accepted")));
    terminal.send(command::AskUnsentLogs);
    terminal.send(command::Greeting);
    QTRY_VERIFY(terminal.has(command::SelfCheck));
    QVERIFY(!terminal.has(command::AccessEvent));  // the service knows of them

    // Who came first is still there; the counts are those of a store that is counted anew.
    QCOMPARE(word("users 7"), QStringLiteral("ok 7"));
    QVERIFY(memcmp(&sim_->settings().users, &first, sizeof first) == 0);
    word("users 500");
    const UserCounts before = sim_->settings().users;
    sim_.reset();
    start();
    QVERIFY(memcmp(&sim_->settings().users, &before, sizeof before) == 0);
}

void ControllerSimTest::firmwareRestartsTheTerminal() {
    sim_->setSupervises(true);
    Terminal terminal(sim_->port());
    terminal.send(command::UpdateFirmware);
    QTRY_VERIFY(terminal.has(command::FirmwareUpdateAnswer));
    QCOMPARE(int(terminal.last.p1), 1);
    QCOMPARE(word("terminal"), QStringLiteral("ok connected"));

    QFile archive(folder_->filePath(QStringLiteral("input/zel01.tar.bz2")));
    QVERIFY(QDir(folder_->path()).mkpath(QStringLiteral("input")));
    QVERIFY(archive.open(QIODevice::WriteOnly));
    archive.write(firmware_image::make(QStringLiteral("1.2.0"), 5000));
    archive.close();
    terminal.forget();
    terminal.send(command::UpdateFirmware);
    QTRY_VERIFY_WITH_TIMEOUT(terminal.has(command::Quit), 20000);
    QVERIFY(terminal.has(command::FirmwareUpdateAnswer));
    QVERIFY(!archive.exists());
    QVERIFY(QFile::exists(folder_->filePath(QStringLiteral("fw_upgrade_ok"))));
    terminal.socket.close();
    QTRY_VERIFY(!sim_->terminalConnected());
    QCOMPARE(word("terminal"), QStringLiteral("ok restarting"));

    Terminal anew(sim_->port());
    anew.send(command::Greeting);
    QTRY_VERIFY(anew.has(command::Settings));
    QCOMPARE(QString::fromUtf8(anew.lastRecord<_gui_menu_>().firmwareVersion),
             QStringLiteral("1.2.0"));
    QCOMPARE(word("terminal"), QStringLiteral("ok connected"));
    anew.send(command::Initialise, 1);
    QTRY_VERIFY(anew.has(command::Initialised));
    QCOMPARE(QString::fromUtf8(sim_->settings().firmwareVersion), QStringLiteral("1.2.0"));
}

void ControllerSimTest::helpNamesTheValues() {
    const QStringList values = word("help settings").split(QLatin1Char('\n'));
    QCOMPARE(values.size(), word("settings").split(QLatin1Char('\n')).size() + 1);
    for (const QString& line : values)
        QVERIFY2(!line.endsWith(QLatin1String(": ")), qPrintable(line));
    QVERIFY(values.filter(QStringLiteral("setup.language: "))[0].endsWith(
        QLatin1String("0 Korean, 1 English, 2 Japanese")));
}

QTEST_MAIN(ControllerSimTest)
#include "controller_sim_test.moc"
