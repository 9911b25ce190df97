#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <cstring>

#include "app/message_routes.h"
#include "app/record_store.h"
#include "app/settings_entrance.h"
#include "app/shell_messages.h"
#include "app/system_status.h"
#include "cloud/parameters.h"
#include "link/command_code.h"
#include "link/device_link.h"
#include "link/frame.h"

/// What the shell makes of the controller's frames by itself, without a window.
class ShellMessagesTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        QVERIFY(controller.listen(QHostAddress::LocalHost));
        link.open(controller.serverPort());
        QVERIFY(controller.waitForNewConnection(10000));
        socket = controller.nextPendingConnection();
        QTRY_VERIFY(link.connected());
        connect(socket, &QTcpSocket::readyRead, this, [this] { received += socket->readAll(); });
        received += socket->readAll();
        QTRY_COMPARE(received, Frame::build(command::Greeting, 0, 0));
        received.clear();
    }

    void answersAtOnce_data() {
        QTest::addColumn<int>("command");
        QTest::addColumn<QByteArray>("answer");
        const QByteArray unsent = Frame::build(command::AskUnsentUsers, 0, 0) +
                                  Frame::build(command::AskUnsentLogs, 0, 0);
        QTest::newRow("quit") << int(command::Quit)
                              << Frame::build(command::QuitAcknowledged, 0, 0);
        QTest::newRow("data waiting") << int(command::UnsentDataWaiting) << unsent;
        QTest::newRow("data ready") << int(command::UnsentDataReady) << unsent;
        QTest::newRow("logs deleted")
            << int(command::FullLogsDeleted) << Frame::build(command::AskUnsentLogs, 0, 0);
        QTest::newRow("text spoken")
            << int(command::TextSpoken) << Frame::build(command::SpeakText, 0, 0);
    }
    void answersAtOnce() {
        QFETCH(int, command);
        QFETCH(QByteArray, answer);
        const QSignalSpy quit(&messages, &ShellMessages::quitOrdered);
        take(static_cast<quint16>(command), 1, 2, {});
        QTRY_COMPARE(received, answer);
        received.clear();
        QCOMPARE(quit.count(), command == command::Quit ? 1 : 0);
    }

    void passesOnWhatItIsTold() {
        const QSignalSpy status(&messages, &ShellMessages::statusReported);
        StatusReport report{};
        report.meals = {1, 2, 3, 4};
        take(command::SystemStatus, 3, 0, bytesOf(report));
        QCOMPARE(status.value(0).value(0).toInt(), 3);
        QCOMPARE(records.mealCount().supper, 4U);

        QByteArray user;
        connect(&messages, &ShellMessages::userEnrolled, this,
                [&](const info_s& info) { user = QByteArray(info.user.userId); });
        info_s info{};
        std::strcpy(info.user.userId, "7");
        take(command::UserEnrolled, 0, 0, bytesOf(info));
        QCOMPARE(user, QByteArray("7"));

        const QSignalSpy popups(&messages, &ShellMessages::popupWanted);
        quint32 number = 0;
        connect(&messages, &ShellMessages::accessReported, this,
                [&](const GUI_LOGDATA& event) { number = event.number; });
        GUI_LOGDATA event{};
        event.number = 4711;
        take(command::AccessEvent, 0, 0, bytesOf(event));
        QCOMPARE(number, 4711U);
        take(command::LogStoreReport, 1, 0, {});
        QCOMPARE(popups.count(), 1);
        QCOMPARE(popups.at(0).at(0).toInt(), int(command::LogStoreReport));
        QCOMPARE(popups.at(0).at(1).toInt(), 1);

        take(command::ControllerEvent, 5, 6, "x");
        QCOMPARE(int(messages.lastControllerEvent().p2), 6);
        QVERIFY(messages.lastControllerEvent().payload == nullptr);
        take(command::SelfCheck, 0, 0, QByteArray("\x44\0\0\x01", 4));
        QCOMPARE(status_.selfCheck(), 0x01000044U);
    }

    void settingsCountOnce() {
        int changes = 0;
        bool first = false;
        QVERIFY(!settings.arrived());
        connect(&settings, &SettingsEntrance::changed, this, [&](const SettingsChange& change) {
            ++changes;
            first = change.first;
            QVERIFY(change.in(&_gui_menu_::sound));
            QCOMPARE(change.in(&_gui_menu_::screen), change.first);
            QCOMPARE(change.in(&_gui_menu_::setup, &SetupBlock::operation), change.first);
        });
        _gui_menu_ record{};
        take(command::Settings, 0, 0, bytesOf(record).chopped(1));
        QVERIFY(!settings.arrived());
        // The first record counts even if it says nothing new.
        take(command::Settings, 0, 0, bytesOf(record));
        QVERIFY(settings.arrived() && first);
        take(command::SettingsChanged, 0, 0, bytesOf(record));
        QCOMPARE(changes, 1);
        record.sound.volume = 3;
        settings.store(record);
        QVERIFY(!first);
        take(command::SettingsChanged, 0, 0, bytesOf(record));
        QCOMPARE(changes, 2);
        QCOMPARE(int(records.menu().sound.volume), 3);
    }

    void aNoteIsLogged_data() {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QByteArray() << QString();
        QTest::newRow("text") << QByteArray("relay \xEB\xAC\xB8") << QStringLiteral("relay 문");
        QTest::newRow("what would spoil a log")
            << QByteArray("\x1b[2Ja\nb\\\0c", 10)
            << QStringLiteral("\\u001b[2Ja\\u000ab\\u005c\\u0000c");
        QTest::newRow("long") << QByteArray(500, 'x')
                              << QString(200, QLatin1Char('x')) + QStringLiteral("...");
    }
    void aNoteIsLogged() {
        QFETCH(QByteArray, payload);
        QFETCH(QString, text);
        const QString line = QStringLiteral("controller note 3 7: ") + text;
        QTest::ignoreMessage(
            QtInfoMsg, QRegularExpression(QRegularExpression::escape(line) + QStringLiteral("$")));
        take(command::ControllerNote, 3, 7, payload);
    }

    void everyIncomingCommandHasARoute() {
        for (std::size_t i = 0; i < command::count(); ++i) {
            const command::Description& row = command::all()[i];
            if (row.direction == command::Direction::FromController)
                QVERIFY2(findMessageRoute(row.code) != nullptr, row.name);
        }
        QVERIFY(findMessageRoute(2900) == nullptr);
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
    template <typename Record>
    static QByteArray bytesOf(const Record& record) {
        return {reinterpret_cast<const char*>(&record), sizeof record};
    }
    void take(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload) {
        messages.take({command, p1, p2, static_cast<quint16>(payload.size()),
                       payload.isEmpty() ? nullptr : payload.constData()});
    }

    QTcpServer controller;
    QTcpSocket* socket = nullptr;
    QByteArray received;  // by the controller
    RecordStore records;
    SettingsEntrance settings{records, nullptr};
    SystemStatus status_{[this] { return records.menu(); }, [] { return false; }, nullptr};
    DeviceLink link{[](quint16, quint8, quint8, quint16, const char*) {}, nullptr};
    ShellMessages messages{link, records, settings, status_, nullptr};
};

QTEST_GUILESS_MAIN(ShellMessagesTest)
#include "shell_messages_test.moc"
