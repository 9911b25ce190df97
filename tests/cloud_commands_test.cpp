#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>
#include <thread>
#include <utility>

#include "cloud/command_queue.h"
#include "cloud/download_manager.h"
#include "cloud/firmware_orders.h"
#include "cloud/firmware_update.h"
#include "cloud/management_commands.h"
#include "cloud_test_support.h"
#include "link/command_code.h"

/// What was answered with success and waits on the disk: that it is carried out, in order, and
/// whatever happens to the process, the link or the disk meanwhile.
class CloudCommandsTest : public QObject {
    Q_OBJECT

 private:
    /// The part of a process that firmware orders go through.
    struct Updater {
        explicit Updater(FakeTerminal& terminal) : update(downloads, terminal) {
            QObject::connect(&downloads, QOverload<>::of(&DownloadManager::finished), &update,
                             &FirmwareUpdate::downloaded);
            update.setResumeDelay(1);
            update.setLookInterval(1);
            update.resume();
        }
        DownloadManager downloads;
        FirmwareUpdate update;
    };

    QTemporaryDir root_;
    std::unique_ptr<FakeHost> cloud_;
    std::unique_ptr<FakeTerminal> terminal_;
    std::unique_ptr<ManagementCommands> commands_;
    std::unique_ptr<CommandQueue> queue_;
    std::unique_ptr<FakeService> service_;
    int answers_ = 0;  // of the controller since the latest step
    int answering_ = 1;

    QString path(const QString& name) const { return CommandFolder::directory() + name; }
    static DoReceiveUserData user(const QString& cardNo) {
        DoReceiveUserData user;
        user.cardNo = cardNo;
        return user;
    }
    static QStringList entriesOf(const QString& folder, const QStringList& names = {}) {
        return QDir(folder).entryList(
            names, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
            QDir::Name);
    }
    static QStringList waiting() {
        return entriesOf(CommandFolder::directory(), {QStringLiteral("2*_???_*")});
    }
    static void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Whether the controller comes to be told of an archive.
    bool told() {
        return QTest::qWaitFor([this] { return !terminal_->log.isEmpty(); }) &&
               terminal_->takeLog() == QLatin1String("1990(0,0)0");
    }
    int step() {
        const auto taken = queue_->step(terminal_->progress, std::exchange(answers_, 0));
        if (!taken || !commands_->addUserRestCommandDir(*taken))
            return 0;
        queue_->sent(terminal_->progress);
        answers_ += answering_;
        return 1;
    }
    /// The codes of the user commands sent, in their order.
    QString sent() const {
        static const QRegularExpression users(QStringLiteral("^19(27|31)\\("));
        QStringList codes;
        for (const QString& line : terminal_->log) {
            if (users.match(line).hasMatch())
                codes << line.left(4);
        }
        return codes.join(QLatin1Char(' '));
    }
    int order(const QString& name) {
        FR44_Parameter order;
        order.address =
            QStringLiteral("http://127.0.0.1:%1/%2").arg(service_->serverPort()).arg(name);
        return FirmwareOrders::keep(order) ? order.number : 0;
    }
    static FR44_Parameter kept(int number) {
        FR44_Parameter order;
        for (const FirmwareOrders::Kept& each : FirmwareOrders::kept()) {
            if (each.number == number)
                order.address = each.address;
        }
        order.number = number;
        return order;
    }

 private slots:
    void initTestCase() { qputenv("ZEL_ROOT", root_.path().toLocal8Bit()); }
    void init() {
        QDir(root_.path() + QStringLiteral("/mnt")).removeRecursively();
        cloud_ = std::make_unique<FakeHost>();
        terminal_ = std::make_unique<FakeTerminal>();
        service_ = std::make_unique<FakeService>();
        service_->answer = [](const FakeService::Request& request) {
            return FakeService::json(request.line);
        };
        commands_ = std::make_unique<ManagementCommands>(*cloud_, *terminal_);
        queue_ = std::make_unique<CommandQueue>();
        answers_ = 0;
        answering_ = 1;
        cloud_->carryOut = [this](int command, const QVariant& parameter) {
            command == 4 ? commands_->enrolUser(parameter) : commands_->deleteUser(parameter);
        };
    }

    void aCommandStaysUntilItHasSurelyArrived() {
        CommandFolder writer;
        QVERIFY(writer.writeAdd(user(QStringLiteral("1234567")), "jpg"));
        QVERIFY(writer.writeDelete(QStringLiteral("1234567")));
        QDir().mkpath(path(QStringLiteral("logo")));
        terminal_->progress.connection = 0;
        QCOMPARE(step(), 0);
        terminal_->reconnect();
        terminal_->stuck = true;
        QCOMPARE(step(), 1);
        QCOMPARE(read(path(QStringLiteral("1234567.jpg"))), QByteArray("jpg"));
        QCOMPARE(step(), 0);
        terminal_->progress.left = terminal_->progress.accepted;
        QCOMPARE(step(), 1);
        // On its way with the connection, perhaps: both once more, in their order, and nobody
        // behind them before.
        QVERIFY(writer.writeAdd(user(QStringLiteral("7654321")), {}));
        terminal_->reconnect();
        terminal_->stuck = false;
        QTRY_COMPARE((step(), sent()), QStringLiteral("1927 1931 1927 1931 1927"));
        QCOMPARE(waiting().size(), 3);
        queue_->setSettleTime(0);
        QTRY_VERIFY((step(), waiting().isEmpty()));
        QCOMPARE(sent(), QStringLiteral("1927 1931 1927 1931 1927"));
        // Unread at the other end, as the controller has not answered yet.
        answering_ = 0;
        QVERIFY(writer.writeDelete(QStringLiteral("A1")) &&
                writer.writeDelete(QStringLiteral("A2")));
        QTRY_COMPARE((step(), sent().count(QLatin1String("1931"))), 4);
        QCOMPARE((step(), step(), waiting().size()), 2);
        for (int left = 2; left-- > 0;) {
            answers_ = 1;
            QCOMPARE((step(), waiting().size()), left);
        }
        QCOMPARE(entriesOf(CommandFolder::directory()),
                 QStringList({QStringLiteral("1234567.jpg"), QStringLiteral("logo")}));
    }

    void theOrderSurvivesTheClock() {
        const QDateTime noon(QDate(2031, 6, 1), QTime(12, 0));
        const QDateTime lost(QDate(1970, 1, 1), QTime(0, 0));
        const QDateTime last(QDate(2099, 12, 31), QTime(23, 59, 59, 998));
        for (const auto& [first, second] : {std::pair(noon, noon.addSecs(-3600)),
                                            {noon, noon},
                                            {noon, lost},
                                            {lost, noon},
                                            {last, noon}}) {
            init();
            const QDateTime before = first;
            const QDateTime after = second;
            QVERIFY(CommandFolder([=] { return before; }).writeAdd(user(QStringLiteral("A1")), {}));
            // Another process writes the second one.
            QVERIFY(CommandFolder([=] { return after; }).writeDelete(QStringLiteral("A1")));
            QCOMPARE(step() + step(), 2);
            QCOMPARE(sent(), QStringLiteral("1927 1931"));
        }
    }

    void aClockBeyondItsCenturyOnlyRefuses() {
        QDateTime now(QDate(2100, 1, 1), QTime(0, 0));
        CommandFolder writer([&now] { return now; });
        QVERIFY(!writer.writeDelete(QStringLiteral("A1")));
        QVERIFY(!writer.writeAdd(user(QStringLiteral("A1")), {}));
        now = now.addYears(-70);
        QVERIFY(writer.writeDelete(QStringLiteral("A1")));
        QCOMPARE(entriesOf(CommandFolder::directory()).size(), 1);
    }

    /// Commands that come in while the folder is being read, which takes some time here.
    void commandsKeepTheirOrderWhileMoreComeIn() {
        for (int i = 0; i < 5000; ++i)
            write(path(QStringLiteral("%1.jpg").arg(i)), {});
        constexpr int kCommands = 2000;
        std::thread writer([] {
            for (int i = 0; i < kCommands; ++i)
                QDir().mkdir(CommandFolder::directory() + QString::number(310101000000000 + i) +
                             QStringLiteral("_del_%1").arg(i));
        });
        queue_->setSettleTime(0);
        for (const QDeadlineTimer end(60000); terminal_->payloads.size() < kCommands;) {
            if (step() == 0 && end.hasExpired())
                break;
        }
        writer.join();
        while (step() != 0) {
        }
        QCOMPARE(terminal_->payloads.size(), kCommands);
        for (int i = 0; i < kCommands; ++i)
            QCOMPARE(QByteArray(terminal_->payloads[i].constData()), QByteArray::number(i));
    }

    void whatCannotBeRemovedIsCarriedOutOnce() {
        CommandFolder writer;
        QVERIFY(writer.writeDelete(QStringLiteral("A1")));
        const QString name = waiting().value(0);
        // Something is where the removal moves it to.
        write(path(QLatin1Char('.') + name + QStringLiteral("/x")), {});
        QVERIFY(writer.writeDelete(QStringLiteral("A2")));
        QVERIFY(writer.writeAdd(user(QStringLiteral("A1")), {}));
        queue_->setSettleTime(0);
        // A restart would repeat it: what was ordered for the same user later has to come behind.
        QTRY_COMPARE((step(), waiting().size()), 2);
        QCOMPARE(step() + step(), 0);
        QCOMPARE(waiting().value(0), name);
        QVERIFY(QDir(path(QLatin1Char('.') + name)).removeRecursively());
        QTRY_VERIFY((step(), waiting().isEmpty()));
        QCOMPARE(sent(), QStringLiteral("1931 1931 1927"));
    }

    void brokenAndUnfinishedCommandsAreSetAside() {
        write(path(QStringLiteral(".240101120000000_add_123456/123456.info")), {});
        write(path(QStringLiteral(".thumbnails/keep")), {});
        write(path(QStringLiteral("240101120000001_add_123456/123456.jpg")), {});
        write(path(QStringLiteral("240101120000002_mod_123456/x")), {});
        write(path(QStringLiteral("249901120000002_del_123456/x")), {});
        QVERIFY(CommandFolder().writeDelete(QStringLiteral("A1")));
        QCOMPARE(step() + step(), 1);
        QCOMPARE(sent(), QStringLiteral("1931"));
        CommandFolder::removeUnfinished();
        queue_->setSettleTime(0);
        QTRY_VERIFY((step(), waiting().size() == 2));
        QCOMPARE(entriesOf(CommandFolder::directory()),
                 QStringList({QStringLiteral(".thumbnails"),
                              QStringLiteral("240101120000002_mod_123456"),
                              QStringLiteral("249901120000002_del_123456")}));
    }

    void linksLeadNowhere() {
        const QString elsewhere = root_.path() + QStringLiteral("/mnt/elsewhere/");
        write(elsewhere + QStringLiteral("123456.info"), "kept");
        write(elsewhere + QStringLiteral("123456.jpg"), "kept");
        CommandFolder writer;
        QVERIFY(writer.writeAdd(user(QStringLiteral("A1")), "new"));
        const QString name = waiting().value(0);
        for (const QString& link :
             {QStringLiteral("000101000000000_del_A0"), QStringLiteral(".000101000000001_add_A0"),
              name + QStringLiteral("/x"), name + QStringLiteral("/y.info")})
            QVERIFY(QFile::link(elsewhere, path(link)));
        QVERIFY(
            QFile::link(elsewhere + QStringLiteral("123456.jpg"), path(QStringLiteral("A1.jpg"))));
        queue_->setSettleTime(0);
        QTRY_VERIFY((step(), !QFileInfo::exists(path(name))));
        QCOMPARE(sent(), QStringLiteral("1927"));
        CommandFolder::removeUnfinished();
        QVERIFY(!QFileInfo(path(QStringLiteral("A1.jpg"))).isSymLink());
        QCOMPARE(read(path(QStringLiteral("A1.jpg"))), QByteArray("new"));

        const QString input = root_.path() + QStringLiteral("/mnt/data/input/");
        write(input + QStringLiteral("zel01.tar.bz2"), "archive");
        write(input + QStringLiteral("half/of/it"), {});
        write(input + QStringLiteral("half.1"), {});
        QVERIFY(QFile::link(elsewhere, input + QStringLiteral("folder")));
        QVERIFY(QFile::link(QStringLiteral("nowhere"), input + QStringLiteral(".dangling")));
        DownloadManager().removeLeftovers();
        QCOMPARE(entriesOf(input), QStringList(QStringLiteral("zel01.tar.bz2")));
        QVERIFY(QDir(root_.path())
                    .rename(QStringLiteral("mnt/data/input"), elsewhere + QLatin1Char('i')));
        QVERIFY(QFile::link(elsewhere, input.chopped(1)));
        DownloadManager().removeLeftovers();
        QCOMPARE(read(elsewhere + QStringLiteral("123456.info")), QByteArray("kept"));
        QCOMPARE(read(elsewhere + QStringLiteral("123456.jpg")), QByteArray("kept"));
    }

    void theFormerPictureStaysUntilItsTurn() {
        write(path(QStringLiteral("A1.jpg")), "former");
        write(path(QStringLiteral("000101000000000_add_A1/A1.jpg")), "of nobody");
        terminal_->stuck = true;
        terminal_->SendCommand(command::KeyClick, 0, 0);
        QVERIFY(CommandFolder().writeAdd(user(QStringLiteral("A1")), "new"));
        QCOMPARE(step(), 0);
        QCOMPARE(read(path(QStringLiteral("A1.jpg"))), QByteArray("former"));
        terminal_->reconnect();
        QCOMPARE(step(), 1);
        QCOMPARE(read(path(QStringLiteral("A1.jpg"))), QByteArray("new"));
    }

    void firmwareOrdersOutliveTheProcess() {
        service_->answer = nullptr;
        const int number = order(QStringLiteral("fw.bin"));
        {
            Updater first(*terminal_);
            QTRY_COMPARE(service_->requests.size(), 1);
        }
        service_->answer = [](const FakeService::Request&) { return FakeService::json("archive"); };
        terminal_->progress.connection = 0;
        QString archive;
        {
            Updater second(*terminal_);
            archive = second.downloads.getArchivePath();
            QTRY_VERIFY(QFile::exists(archive));
            QVERIFY(terminal_->log.isEmpty());
            terminal_->reconnect();
            QVERIFY(told());
            terminal_->reconnect();
            QVERIFY(told());
        }
        // A controller that never answers is told again at the next starts, but not for ever.
        for (int start = 2; start <= FirmwareUpdate::kMostHandOvers; ++start) {
            Updater next(*terminal_);
            QVERIFY(told());
        }
        Updater last(*terminal_);
        QVERIFY(number > 0 && FirmwareOrders::kept().isEmpty());
        QCOMPARE(read(archive), QByteArray("archive"));
    }

    void anArchiveIsLeftUntilTheControllerHasAnswered() {
        Updater updater(*terminal_);
        const QString archive = updater.downloads.getArchivePath();
        const auto carryOut = [&](const char* name) {
            updater.update.order(kept(order(QLatin1String(name))));
        };
        carryOut("a");
        QVERIFY(told());
        carryOut("b");
        carryOut("c");
        QCoreApplication::processEvents();
        QVERIFY(read(archive).startsWith("GET /a "));
        updater.update.answered();
        QVERIFY(told());
        QVERIFY(read(archive).startsWith("GET /c "));
        QCOMPARE(FirmwareOrders::kept().size(), 1);
        updater.update.answered();
        QVERIFY(FirmwareOrders::kept().isEmpty());

        // One that fails, and a controller that says nothing.
        service_->answer = [](const FakeService::Request&) {
            return QByteArray("HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n");
        };
        updater.update.setAnswerTime(0);
        carryOut("d");
        QVERIFY(told());
        QVERIFY(!QFile::exists(archive) && FirmwareOrders::kept().isEmpty());
        carryOut("e");
        QTRY_COMPARE(service_->requests.size(), 5);
    }

    void firmwareOrdersHaveALimit() {
        for (int i = 1; i <= FirmwareOrders::kMost; ++i)
            QCOMPARE(order(QStringLiteral("x")), i);
        QCOMPARE(order(QStringLiteral("x")), 0);
        FirmwareOrders::remove(3);
        QCOMPARE(order(QStringLiteral("x")), FirmwareOrders::kMost + 1);
    }
};

QTEST_GUILESS_MAIN(CloudCommandsTest)
#include "cloud_commands_test.moc"
