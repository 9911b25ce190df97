#include <QTcpSocket>
#include <QtTest>
#include <memory>

#include "link/command_code.h"
#include "link/device_link.h"
#include "link/device_message.h"
#include "link/frame.h"
#include "sim/common/firmware_image.h"
#include "sim/common/line_buffer.h"
#include "sim/controller/controller_sim.h"
#include "sim/controller/work_status.h"
#include "tests/support/test_root.h"

namespace {

/// The terminal's side of the link, which greets when it is up, and what it is told: each frame as
/// "code(p1,p2)length".
class Terminal : public DeviceLink {
 public:
    explicit Terminal(const ControllerSim& sim)
        : DeviceLink(
              [this](quint16 code, quint8 p1, quint8 p2, quint16 length, const char* data) {
                  told << QStringLiteral("%1(%2,%3)%4").arg(code).arg(p1).arg(p2).arg(length);
                  payload = QByteArray(data, length);
              },
              nullptr) {
        open(sim.port());
        // Or its answer is taken for that to a later one.
        [this] { QTRY_VERIFY(told.contains(kChecked)); }();
    }
    QTcpSocket* socket() const { return findChild<QTcpSocket*>(); }
    /// What it has been told by codes that match @p codes since this was last asked, once the
    /// controller has dealt with all that was sent.
    QString heard(const char* codes) {
        const auto checks = [this] { return told.count(kChecked); };
        const int before = checks();
        send(command::Greeting, 0, 0);
        if (!QTest::qWaitFor([&] { return checks() > before; }))
            return QStringLiteral("lost");
        const QRegularExpression wanted(QStringLiteral("^(%1)\\(").arg(QLatin1String(codes)));
        return std::exchange(told, {}).filter(wanted).join(QLatin1Char(' '));
    }

    QStringList told;
    QByteArray payload;  // of the latest frame

 private:
    const QString kChecked = QStringLiteral("6003(0,0)4");
};

}  // namespace

class ControllerSimTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        sim_.reset();
        root_.clear("/mnt/data");
        start();
    }

    void greetingIsAnsweredAlsoByteByByte() {
        for (int split = 0; split < 2; ++split) {
            Terminal terminal(*sim_);
            QTRY_COMPARE(terminal.payload, QByteArray(4, '\0'));
            const QRegularExpression answers(
                QStringLiteral("^2907\\(0,0\\)380 2902\\(\\d,0\\)20 6003\\(0,0\\)4$"));
            QVERIFY(terminal.told.join(QLatin1Char(' ')).contains(answers));
            // Noise in between costs no frame.
            words({"noise", "fault touch tamper"});
            QTRY_COMPARE(terminal.payload, QByteArray::fromHex("44000000"));
            words({"fault none", "split"});
        }
    }

    void savesSurviveARestart() {
        const ScreenBlock screen{9, 1, 1, 0, 3, 2, 1};
        Terminal terminal(*sim_);
        terminal.send(command::SaveScreenSettings, 1, 0, sizeof screen,
                      reinterpret_cast<const char*>(&screen));
        terminal.send(command::SaveFaceSettings, 1, 0, 2, "xx");
        QCOMPARE(terminal.heard("295."), QStringLiteral("2951(0,0)0 2950(1,0)0"));
        words({"settings setup.language 1", "settings customerId 빌딩 7"});
        start();
        QVERIFY(memcmp(&sim_->settings().screen, &screen, sizeof screen) == 0);
        QCOMPARE(int(sim_->settings().setup.language), 1);
        QCOMPARE(QString::fromUtf8(sim_->settings().customerId), QStringLiteral("빌딩 7"));
    }

    void brokenFilesArePutAside() {
        const _gui_menu_ defaults = sim_->settings();
        for (const QByteArray& content :
             {QByteArray("{ \"settings\": "), QByteArray(3000000, 'x'),
              QByteArray("{\"settings\":{\"setup.language\":\"900\"}}")}) {
            sim_.reset();
            root_.write(root_.path("/mnt/data/sim/controller.json"), content);
            start();
            QVERIFY(memcmp(&sim_->settings(), &defaults, sizeof defaults) == 0);
        }
        sim_.reset();
        const QString users = root_.path("/mnt/data/db_user2/DB_userT.bin");
        root_.write(users, QByteArray(5000, 'x'));
        start();
        words({"card 10000001"});
        QCOMPARE(root_.read(users + QStringLiteral(".broken")).size(), 5000);
    }

    void garbageFromTheTerminalIsHarmless() {
        Terminal terminal(*sim_);
        QByteArray garbage;
        for (int i = 0; i < 100000; ++i)
            garbage.append(static_cast<char>((i * 7919) >> 3));
        // The garbage may end inside of something that looks like a frame; the rest fills that up.
        terminal.socket()->write(garbage + QByteArray(2200, '\0'));
        for (quint16 code = 1902; code <= 2100; ++code) {
            if (code == command::Reboot || code == command::FactoryRestart)
                continue;  // which end the link
            for (const quint16 length : {0, 1, 2092})
                terminal.send(code, 255, 255, length, QByteArray(length, '\xFF').constData());
            QVERIFY2(code % 8 != 0 || terminal.heard("x").isEmpty(),
                     QByteArray::number(code).constData());
        }
        terminal.send(65535, 0, 0);

        // Half a frame, then another terminal: it replaces the old one and starts afresh.
        terminal.socket()->write(
            Frame::build(command::SaveScreenSettings, 1, 0, 7, "1234567").left(12));
        QTRY_COMPARE(terminal.socket()->bytesToWrite(), qint64{0});
        Terminal next(*sim_);
        QTRY_VERIFY(!terminal.connected());
        terminal.close(0);
        QCOMPARE(next.heard("2951"), QString());
    }

    void wordsThatMakeNoSense() {
        QStringList lines =
            QStringLiteral(
                "nonsense|settings nothing 1|settings reserved1 1|"
                "settings setup.language 256|settings setup.language -1|"
                "settings operation.weekdayIn 8:00~9:00|"
                "settings operation.weekdayIn 25:00~26:00|"
                "settings network.own.dns 1.2.3|"
                "settings setup.adminPassword 123456789|status|status 256|fault x|"
                "frame|frame 70000 0 0|frame 3000 0 256|frame 3000 0 0 0|frame 3000 0 0 xy|refuse|"
                "refuse 3000|refuse 1905|refuse 1951 256|silent 1951 1|delay 1951|"
                "delay 1951 -1|lose-link-at x|users -1|users 10001|logs 100001|"
                "restart-gui|screen|help nonsense")
                .split(QLatin1Char('|'));
        lines << QString(LineBuffer::kMaxLine + 1, QLatin1Char('a'))
              << QStringLiteral("frame 3000 0 0 ") + QString(2093 * 2, QLatin1Char('0'));
        const _gui_menu_ before = sim_->settings();
        for (const QString& line : qAsConst(lines)) {
            const bool refused = sim_->execute(line).startsWith(QLatin1String("error "));
            QVERIFY2(refused && memcmp(&sim_->settings(), &before, sizeof before) == 0,
                     qPrintable(line.left(60)));
        }
    }

    void controlPortAnswersEveryLine() {
        QTcpSocket client;
        client.connectToHost(QHostAddress(QHostAddress::LocalHost), sim_->controlPort());
        client.write("status 3\r\n\n" + QByteArray(1000000, 'x') + "\n\xFF\xFE\nstat");
        client.write("us 4\n");
        QString answers;
        QTRY_COMPARE((answers += QString::fromUtf8(client.readAll())).count(QLatin1Char('\n')), 4);
        const QRegularExpression expected(QStringLiteral("^ok\nerror the line.*\nerror.*\nok\n$"));
        QVERIFY2(answers.contains(expected), qPrintable(answers));

        QSignalSpy quit(sim_.get(), &ControllerSim::quitRequested);
        client.write("quit\n");
        QTRY_COMPARE(quit.count(), 1);
    }

    void statusFollowsThePeriods() {
        _gui_menu_ meals = factorySettings();
        meals.setup.operation = Operation::Meals;
        meals.operation.saveSimpleAccess = 1;  // dinner off; supper reaches across midnight
        meals.operation.weekdayIn = {7, 0, 9, 0};
        meals.operation.weekdayOut = {11, 30, 13, 30};
        meals.operation.saturdayIn = {17, 30, 19, 30};
        meals.operation.saturdayOut = {22, 0, 2, 0};
        _gui_menu_ attendance = factorySettings();
        attendance.setup.operation = Operation::Attendance;
        _gui_menu_ access = factorySettings();
        access.setup.operation = Operation::AccessOnly;
        // 2026-03-13 is a Friday; the factory settings hold the attendance times.
        const struct {
            const _gui_menu_& menu;
            const char* statuses;
        } rows[] = {
            {attendance,
             "13T07:59=0 13T08:00=1 13T09:30=0 13T21:59=2 14T09:45=1 14T17:45=2 15T09:45=1"},
            {access, "13T08:00=0"},
            {meals, "13T08:00=1 15T12:00=2 13T18:00=0 13T23:59=4 14T01:59=4 14T02:00=0"}};
        for (const auto& row : rows) {
            for (const QByteArray& one : QByteArray(row.statuses).split(' ')) {
                const QDateTime time = QDateTime::fromString(
                    QStringLiteral("2026-03-") + QLatin1String(one.left(8)), Qt::ISODate);
                const int status = one.right(1).toInt();
                const QDateTime next = work::nextChange(row.menu, time);
                QVERIFY2(work::statusAt(row.menu, time) == status && next > time &&
                             time.secsTo(next) <= 24 * 3600 &&
                             work::statusAt(row.menu, next.addSecs(-60)) == status,
                         one.constData());
            }
        }
    }

    void everybodyIsLogged() {
        Terminal terminal(*sim_);
        words({"time 2026-03-13 07:00", "time 2026-03-13 08:00"});  // the status changes
        QTRY_VERIFY(terminal.told.contains(QStringLiteral("2902(1,0)20")));
        const qint64 ahead = root_.read(root_.path("/mnt/data/sim/clock")).trimmed().toLongLong();
        const QDateTime shown = QDateTime::currentDateTime().addSecs(ahead);
        QVERIFY(ahead != 0 && qAbs(shown.secsTo(sim_->now())) <= 1);

        // A camera that is off, or takes a picture for an enrolment, sees nobody.
        words({"track on"});
        for (const auto& [mode, camera] : {std::pair<quint8, quint8>(1, 0), {0, 1}, {2, 1}}) {
            terminal.send(command::RecognitionMode, mode, 0);
            terminal.send(command::CameraRun, camera, 0);
            QCOMPARE(terminal.heard("3000"), QString());
            QVERIFY(word("face 01023456789").startsWith(QLatin1String("error")));
        }
        terminal.send(command::RecognitionMode, 1, 0);
        QTRY_VERIFY(!terminal.told.filter(QStringLiteral("3000(")).isEmpty());
        // The door opens for somebody who has chosen; a second choice is none, and who chooses
        // nothing is recorded by the time of day.
        words({"track off", "face 01023456789"});
        QCOMPARE(terminal.heard("3036"), QString());
        for (const quint8 key : {17, 18})
            terminal.send(command::RecognitionKey, key, 0);
        QCOMPARE(terminal.heard("3036"), QStringLiteral("3036(0,0)0"));
        words({"card 10000002", "face unknown", "settings operation.attendanceMode 4",
               "card 10000002", "card 10000006"});  // who may come at night only
        const QRegularExpression logs(
            QStringLiteral("^.*01077778888 mode 3 refused.*\n.*01098765432 mode 3 accepted.*\n"
                           ".* mode 0 refused.*\n.*01098765432 mode 1 accepted.*\n"
                           ".*01023456789 mode 2 accepted.*\nok.*$"));
        QVERIFY2(word("logs").contains(logs), qPrintable(word("logs")));
    }

    void requestsMeetTrouble() {
        Terminal terminal(*sim_);
        ScreenBlock screen = sim_->settings().screen;
        const int before = screen.brightness;
        const auto save = [&](quint8 brightness) {
            screen.brightness = brightness;
            terminal.send(command::SaveScreenSettings, 1, 0, sizeof screen,
                          reinterpret_cast<const char*>(&screen));
            return terminal.heard("2951");
        };
        const auto stored = [this] { return int(sim_->settings().screen.brightness); };
        const QString saved = QStringLiteral("2951(0,0)0");
        QCOMPARE(word("refuse 1951 9"), QStringLiteral("ok SaveScreenSettings"));
        words({"silent 1951"});
        QCOMPARE(save(1), QStringLiteral("2951(9,0)0"));
        QCOMPARE(save(2), QString());
        QCOMPARE(stored(), before);
        words({"delay 1951 500"});
        QCOMPARE(save(3), QString());
        QTRY_VERIFY(terminal.told.contains(saved));
        QCOMPARE(stored(), 3);
        words({"silent 1951", "normal"});
        terminal.told.clear();
        QCOMPARE(save(4), saved);

        // What was asked for on a lost link is not done on the next one either.
        words({"delay 1951 500", "lose-link-at 1957"});
        QCOMPARE(save(5), QString());
        terminal.send(command::Initialise, 1, 0);
        QTRY_VERIFY(!terminal.connected());
        terminal.close(0);
        Terminal next(*sim_);
        words({"delay 1905 550"});
        next.send(command::ScreenClosed, 0, 0);
        QTRY_VERIFY(next.told.contains(QStringLiteral("2905(0,0)0")));
        QVERIFY(!next.told.contains(saved));
        QCOMPARE(stored(), 4);
    }

    void storesAreFilled() {
        Terminal terminal(*sim_);
        const UserCounts first = sim_->settings().users;
        QCOMPARE(word("users 10000"), QStringLiteral("ok 10000"));
        const UserCounts full = sim_->settings().users;
        QCOMPARE(full.general + full.admin + full.visitor, 10000U);
        QCOMPARE(full.admin, first.admin);
        const QStringList list = word("users").split(QLatin1Char('\n'));
        for (const char* script : {"[가-힣]", "[A-Za-z]", "[ぁ-んァ-ン一-龠]"})
            QVERIFY(list.filter(QRegularExpression(QString::fromUtf8(script))).size() > 1000);

        QCOMPARE(word("logs 5000"), QStringLiteral("ok 5000"));
        const QString newest = word("logs");
        const auto day = QDate::fromString(newest.section(QLatin1Char(' '), 1, 1), Qt::ISODate);
        QVERIFY(day.daysTo(QDate::currentDate()) < 7 && newest.contains(QLatin1String("accepted")));
        terminal.send(command::AskUnsentLogs, 0, 0);
        QCOMPARE(terminal.heard("3020"), QString());  // the service knows of them

        // Who came first is still there; the counts are those of a store that is counted anew.
        QCOMPARE(word("users 7"), QStringLiteral("ok 7"));
        QVERIFY(memcmp(&sim_->settings().users, &first, sizeof first) == 0);
        words({"users 500"});
        const UserCounts before = sim_->settings().users;
        start();
        QVERIFY(memcmp(&sim_->settings().users, &before, sizeof before) == 0);
    }

    void firmwareRestartsTheTerminal() {
        sim_->setSupervises(true);
        auto terminal = std::make_unique<Terminal>(*sim_);
        terminal->send(command::UpdateFirmware, 0, 0);
        QCOMPARE(terminal->heard("2990"), QStringLiteral("2990(1,0)0"));
        const QString archive = root_.path("/mnt/data/input/zel01.tar.bz2");
        root_.write(archive, firmware_image::make(QStringLiteral("1.2.0"), 5000));
        terminal->send(command::UpdateFirmware, 0, 0);
        QTRY_VERIFY_WITH_TIMEOUT(terminal->told.contains(QStringLiteral("2901(0,0)0")), 20000);
        QVERIFY(terminal->told.contains(QStringLiteral("2990(0,0)0")));
        QVERIFY(!QFile::exists(archive));
        QVERIFY(QFile::exists(root_.path("/mnt/data/fw_upgrade_ok")));
        terminal.reset();
        QTRY_COMPARE(word("terminal"), QStringLiteral("ok restarting"));
        Terminal anew(*sim_);
        QTRY_COMPARE(word("terminal"), QStringLiteral("ok connected"));
        anew.send(command::Initialise, 1, 0);
        QCOMPARE(anew.heard("2957"), QStringLiteral("2957(0,1)0"));
        QCOMPARE(QString::fromUtf8(sim_->settings().firmwareVersion), QStringLiteral("1.2.0"));
    }

    void helpNamesTheValues() {
        const QStringList values = word("help settings").split(QLatin1Char('\n'));
        QCOMPARE(values.size(), word("settings").count(QLatin1Char('\n')) + 2);
        QCOMPARE(values.filter(QRegularExpression(QStringLiteral(": $"))), QStringList());
        QVERIFY(values.filter(QStringLiteral("setup.language: "))[0].endsWith(
            QLatin1String("0 Korean, 1 English, 2 Japanese")));
    }

 private:
    QString word(const char* line) { return sim_->execute(QString::fromUtf8(line)); }
    void words(std::initializer_list<const char*> lines) {
        for (const char* line : lines)
            QVERIFY2(word(line).startsWith(QLatin1String("ok")), line);
    }
    /// Starts the controller, also anew.
    void start() {
        sim_.reset();
        sim_ = std::make_unique<ControllerSim>(0, 0, root_.path("/mnt/data"));
        QVERIFY(sim_->listening());
    }

    TestRoot root_;
    std::unique_ptr<ControllerSim> sim_;
};

QTEST_MAIN(ControllerSimTest)
#include "controller_sim_test.moc"
