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
    /// Waits until what has been sent has been dealt with.
    bool settles() {
        frames.erase(
            std::remove_if(frames.begin(), frames.end(),
                           [](const Received& one) { return one.code == command::SelfCheck; }),
            frames.end());
        last = {};
        send(command::Greeting);
        return QTest::qWaitFor([this] { return has(command::SelfCheck); });
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
    void init() {
        sim_.reset();
        folder_ = std::make_unique<QTemporaryDir>();
        start();
        QVERIFY(sim_->listening());
    }

    void greetingIsAnsweredAlsoByteByByte() {
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
            words({"noise", "fault touch tamper"});
            QTRY_VERIFY(terminal.has(command::SelfCheck));
            QCOMPARE(terminal.last.payload, QByteArray::fromHex("44000000"));
            words({"fault none", "split"});
        }
    }

    void savesSurviveARestart() {
        const ScreenBlock screen{9, 1, 1, 0, 3, 2, 1};
        {
            Terminal terminal(sim_->port());
            terminal.sendRecord(command::SaveScreenSettings, 1, screen);
            terminal.send(command::SaveFaceSettings, 1, 0, "xx");
            QTRY_VERIFY(terminal.has(command::FaceSettingsSaved));
            QCOMPARE(int(terminal.last.p1), 1);
            QVERIFY(terminal.has(command::ScreenSettingsSaved));
            QCOMPARE(int(terminal.last.p1), 0);
        }
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
            write("sim/controller.json", content);
            start();
            QVERIFY(memcmp(&sim_->settings(), &defaults, sizeof defaults) == 0);
        }
        sim_.reset();
        write("db_user2/DB_userT.bin", QByteArray(5000, 'x'));
        start();
        words({"card 10000001"});
        QCOMPARE(
            QFileInfo(folder_->filePath(QStringLiteral("db_user2/DB_userT.bin.broken"))).size(),
            qint64(5000));
    }

    void garbageFromTheTerminalIsHarmless() {
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
        QVERIFY(terminal.settles());

        // Half a frame, then gone: the next terminal starts afresh.
        terminal.socket.write(
            Frame::build(command::SaveScreenSettings, 1, 0, 7, "1234567").left(12));
        QTRY_COMPARE(terminal.socket.bytesToWrite(), qint64(0));
        terminal.socket.abort();
        QTRY_VERIFY(!sim_->terminalConnected());
        Terminal next(sim_->port());
        QVERIFY(next.settles());
    }

    void aNewTerminalReplacesTheOldOne() {
        Terminal first(sim_->port());
        QTRY_VERIFY(sim_->terminalConnected());
        Terminal second(sim_->port());
        QTRY_COMPARE(first.socket.state(), QAbstractSocket::UnconnectedState);
        QVERIFY(second.settles());
        words({"quit-gui"});
        QTRY_VERIFY(second.has(command::Quit));
        words({"drop"});
        QTRY_COMPARE(second.socket.state(), QAbstractSocket::UnconnectedState);
    }

    void wordsThatMakeNoSense() {
        QStringList lines = QStringLiteral(
                                "nonsense|settings nothing 1|settings reserved1 1|"
                                "settings setup.language 256|settings setup.language -1|"
                                "settings operation.weekdayIn 8:00~9:00|"
                                "settings operation.weekdayIn 25:00~26:00|"
                                "settings network.own.dns 1.2.3|"
                                "settings setup.adminPassword 123456789|status|status 256|fault x|"
                                "frame|frame 70000 0 0|frame 3000 0 0 0|frame 3000 0 0 xy|refuse|"
                                "refuse 3000|refuse 1905|refuse 1951 256|silent 1951 1|delay 1951|"
                                "delay 1951 -1|lose-link-at x|users -1|users 10001|logs 100001|"
                                "restart-gui|screen|help nonsense")
                                .split(QLatin1Char('|'));
        lines.append(QString(LineBuffer::kMaxLine + 1, QLatin1Char('a')));
        lines.append(QStringLiteral("frame 3000 0 0 ") + QString(2093 * 2, QLatin1Char('0')));
        const _gui_menu_ before = sim_->settings();
        for (const QString& line : qAsConst(lines)) {
            QVERIFY2(sim_->execute(line).startsWith(QLatin1String("error ")),
                     qPrintable(line.left(60)));
            QVERIFY(memcmp(&sim_->settings(), &before, sizeof before) == 0);
        }
    }

    void controlPortAnswersEveryLine() {
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

    void statusFollowsThePeriods() {
        const struct {
            int operation;
            const char* now;
            int status;
        } rows[] = {
            // 2026-03-13 is a Friday; the factory settings hold the attendance times.
            {1, "2026-03-13T07:59", 0},
            {1, "2026-03-13T08:00", 1},
            {1, "2026-03-13T09:30", 0},
            {1, "2026-03-13T21:59", 2},
            {1, "2026-03-14T09:45", 1},
            {1, "2026-03-14T17:45", 2},
            {1, "2026-03-15T09:45", 1},
            {0, "2026-03-13T08:00", 0},
            // Dinner is off, supper reaches across midnight.
            {2, "2026-03-13T08:00", 1},
            {2, "2026-03-15T12:00", 2},
            {2, "2026-03-13T18:00", 0},
            {2, "2026-03-13T23:59", 4},
            {2, "2026-03-14T01:59", 4},
            {2, "2026-03-14T02:00", 0},
        };
        for (const auto& row : rows) {
            _gui_menu_ menu = factorySettings();
            menu.setup.operation = static_cast<quint8>(row.operation);
            if (row.operation == Operation::Meals) {
                menu.operation.saveSimpleAccess = 1;  // dinner off
                menu.operation.weekdayIn = {7, 0, 9, 0};
                menu.operation.weekdayOut = {11, 30, 13, 30};
                menu.operation.saturdayIn = {17, 30, 19, 30};
                menu.operation.saturdayOut = {22, 0, 2, 0};
            }
            const QDateTime time = QDateTime::fromString(QLatin1String(row.now), Qt::ISODate);
            QVERIFY2(work::statusAt(menu, time) == row.status, row.now);
            const QDateTime next = work::nextChange(menu, time);
            QVERIFY2(next > time && time.secsTo(next) <= 24 * 3600, row.now);
            QVERIFY2(work::statusAt(menu, next.addSecs(-60)) == row.status, row.now);
        }
    }

    void everybodyIsLogged() {
        Terminal terminal(sim_->port());
        QTRY_VERIFY(sim_->terminalConnected());
        words({"time 2026-03-13 07:00", "time 2026-03-13 08:00"});  // the status changes
        QTRY_VERIFY(terminal.has(command::SystemStatus) && terminal.last.p1 == 1);
        QFile clock(folder_->filePath(QStringLiteral("sim/clock")));
        QVERIFY(clock.open(QIODevice::ReadOnly));
        const QDateTime shown =
            QDateTime::currentDateTime().addSecs(clock.readAll().trimmed().toLongLong());
        QVERIFY(qAbs(shown.secsTo(sim_->now())) <= 1);

        // A camera that is off, or takes a picture for an enrolment, sees nobody.
        words({"track on"});
        for (const quint8 mode : {0, 2}) {
            terminal.send(command::RecognitionMode, mode);
            terminal.send(command::CameraRun, mode == 0 ? 0 : 1);
            QVERIFY(terminal.settles());
            QVERIFY(word("face 01023456789").startsWith(QLatin1String("error")));
            QVERIFY(!terminal.has(command::TrackingBox));
        }
        terminal.send(command::RecognitionMode, 1);
        QTRY_VERIFY(terminal.has(command::TrackingBox));
        // The door opens for somebody who has chosen; a second choice is none, and who chooses
        // nothing is recorded by the time of day.
        words({"track off", "face 01023456789"});
        QVERIFY(terminal.settles() && !terminal.has(command::DoorOpened));
        terminal.send(command::RecognitionKey, 17);
        QTRY_VERIFY(terminal.has(command::DoorOpened));
        terminal.send(command::RecognitionKey, 18);
        words({"card 10000002", "face unknown", "settings operation.attendanceMode 4",
               "card 10000002", "card 10000006"});  // who may come at night only
        const QStringList logs = word("logs").split(QLatin1Char('\n'));
        QCOMPARE(logs.size(), 6);
        const char* const expected[] = {"01077778888 mode 3 refused", "01098765432 mode 3 accepted",
                                        "mode 0 refused", "01098765432 mode 1 accepted",
                                        "01023456789 mode 2 accepted"};
        for (int i = 0; i < 5; ++i)
            QVERIFY2(logs[i].contains(QLatin1String(expected[i])), expected[i]);
    }

    void requestsMeetTrouble() {
        Terminal terminal(sim_->port());
        QTRY_VERIFY(sim_->terminalConnected());
        ScreenBlock screen = sim_->settings().screen;
        const auto save = [&](quint8 brightness) {
            screen.brightness = brightness;
            terminal.forget();
            terminal.sendRecord(command::SaveScreenSettings, 1, screen);
            return terminal.settles();
        };
        const auto stored = [this] { return int(sim_->settings().screen.brightness); };
        const int before = stored();
        QCOMPARE(word("refuse 1951 9"), QStringLiteral("ok SaveScreenSettings"));
        words({"silent 1951"});
        QVERIFY(save(1) && terminal.has(command::ScreenSettingsSaved));
        QCOMPARE(int(terminal.last.p1), 9);
        QVERIFY(save(2) && !terminal.has(command::ScreenSettingsSaved));
        QCOMPARE(stored(), before);
        words({"delay 1951 100"});
        QVERIFY(save(3) && !terminal.has(command::ScreenSettingsSaved));
        QTRY_VERIFY(terminal.has(command::ScreenSettingsSaved));
        QCOMPARE(stored(), 3);
        words({"silent 1951", "normal"});
        QVERIFY(save(4) && terminal.has(command::ScreenSettingsSaved));

        // What was asked for on a lost link is not done on the next one either.
        words({"delay 1951 50", "lose-link-at 1957"});
        QVERIFY(save(5));
        terminal.send(command::Initialise, 1);
        QTRY_COMPARE(terminal.socket.state(), QAbstractSocket::UnconnectedState);
        Terminal next(sim_->port());
        words({"delay 1905 100"});
        next.send(command::ScreenClosed);
        QTRY_VERIFY(next.has(command::ScreenClosedAnswer));
        QVERIFY(!next.has(command::ScreenSettingsSaved));
        QCOMPARE(stored(), 4);
    }

    void storesAreFilled() {
        Terminal terminal(sim_->port());
        QTRY_VERIFY(sim_->terminalConnected());
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
        QVERIFY(QDateTime::fromString(newest.section(QLatin1Char(' '), 1, 2),
                                      QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                    .daysTo(QDateTime::currentDateTime()) < 7);
        QVERIFY(newest.contains(QLatin1String("accepted")));
        terminal.send(command::AskUnsentLogs);
        QVERIFY(terminal.settles());
        QVERIFY(!terminal.has(command::AccessEvent));  // the service knows of them

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
        Terminal terminal(sim_->port());
        terminal.send(command::UpdateFirmware);
        QTRY_VERIFY(terminal.has(command::FirmwareUpdateAnswer));
        QCOMPARE(int(terminal.last.p1), 1);
        write("input/zel01.tar.bz2", firmware_image::make(QStringLiteral("1.2.0"), 5000));
        terminal.forget();
        terminal.send(command::UpdateFirmware);
        QTRY_VERIFY_WITH_TIMEOUT(terminal.has(command::Quit), 20000);
        QVERIFY(terminal.has(command::FirmwareUpdateAnswer));
        QVERIFY(!QFile::exists(folder_->filePath(QStringLiteral("input/zel01.tar.bz2"))));
        QVERIFY(QFile::exists(folder_->filePath(QStringLiteral("fw_upgrade_ok"))));
        terminal.socket.close();
        QTRY_COMPARE(word("terminal"), QStringLiteral("ok restarting"));
        Terminal anew(sim_->port());
        QVERIFY(anew.settles());
        QCOMPARE(word("terminal"), QStringLiteral("ok connected"));
        anew.send(command::Initialise, 1);
        QTRY_VERIFY(anew.has(command::Initialised));
        QCOMPARE(QString::fromUtf8(sim_->settings().firmwareVersion), QStringLiteral("1.2.0"));
    }

    void helpNamesTheValues() {
        const QStringList values = word("help settings").split(QLatin1Char('\n'));
        QCOMPARE(values.size(), word("settings").split(QLatin1Char('\n')).size() + 1);
        for (const QString& line : values)
            QVERIFY2(!line.endsWith(QLatin1String(": ")), qPrintable(line));
        QVERIFY(values.filter(QStringLiteral("setup.language: "))[0].endsWith(
            QLatin1String("0 Korean, 1 English, 2 Japanese")));
    }

 private:
    QString word(const char* line) { return sim_->execute(QString::fromUtf8(line)); }
    void words(std::initializer_list<const char*> lines) {
        for (const char* line : lines)
            QVERIFY2(word(line).startsWith(QLatin1String("ok")), line);
    }
    void write(const char* name, const QByteArray& content) {
        QFile file(folder_->filePath(QLatin1String(name)));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    /// Starts the controller, also anew.
    void start() {
        sim_.reset();
        sim_ = std::make_unique<ControllerSim>(0, 0, folder_->path());
    }

    std::unique_ptr<QTemporaryDir> folder_;
    std::unique_ptr<ControllerSim> sim_;
};

QTEST_MAIN(ControllerSimTest)
#include "controller_sim_test.moc"
