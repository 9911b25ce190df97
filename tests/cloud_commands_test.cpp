#include <sys/resource.h>

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

    TestRoot root_;
    FakeHost cloud_;
    std::unique_ptr<FakeTerminal> terminal_;
    std::unique_ptr<ManagementCommands> commands_;
    std::unique_ptr<CommandQueue> queue_;
    std::unique_ptr<FakeService> service_;
    int answers_ = 0;  // of the controller since the latest step
    int answering_ = 1;

    static QString path(const QByteArray& name) {
        return CommandFolder::directory() + QLatin1String(name);
    }
    /// Orders to add users and to delete them: "+123456 -123456".
    static bool order(const QByteArray& words, const QByteArray& picture = {},
                      CommandFolder&& writer = CommandFolder()) {
        bool written = true;
        for (const QByteArray& word : words.split(' ')) {
            DoReceiveUserData user;
            user.cardNo = QLatin1String(word.mid(1));
            written = written && (word[0] == '+' ? writer.writeAdd(user, picture)
                                                 : writer.writeDelete(user.cardNo));
        }
        return written;
    }
    static QString all() {
        return TestRoot::namesIn(CommandFolder::directory()).join(QLatin1Char(' '));
    }
    static QStringList waiting() {
        return TestRoot::namesIn(CommandFolder::directory(), {QStringLiteral("2*_???_*")});
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
        static const QRegularExpression others(QStringLiteral("\\(.*"));
        return terminal_->log.filter(QRegularExpression(QStringLiteral("^19(27|31)")))
            .replaceInStrings(others, QString())
            .join(QLatin1Char(' '));
    }
    int orderFirmware(const char* name) {
        FR44_Parameter order;
        order.address = service_->url(QLatin1String(name)).toString();
        return FirmwareOrders::keep(order) ? order.number : 0;
    }

 private slots:
    void init() {
        root_.clear("/mnt");
        terminal_ = std::make_unique<FakeTerminal>();
        service_ = std::make_unique<FakeService>();
        service_->answer = [](const FakeService::Request& request) {
            return FakeService::json(request.line);
        };
        commands_ = std::make_unique<ManagementCommands>(cloud_, *terminal_);
        queue_ = std::make_unique<CommandQueue>();
        answers_ = 0;
        answering_ = 1;
        cloud_.carryOut = [this](int command, const QVariant& parameter) {
            command == 4 ? commands_->enrolUser(parameter) : commands_->deleteUser(parameter);
        };
    }

    void aCommandStaysUntilItHasSurelyArrived() {
        QVERIFY(order("+1234567 -1234567", "jpg"));
        QDir().mkpath(path("logo"));
        terminal_->progress.connection = 0;
        QCOMPARE(step(), 0);
        terminal_->reconnect();
        terminal_->stuck = true;
        QCOMPARE(step(), 1);
        QCOMPARE(root_.read(path("1234567.jpg")), QByteArray("jpg"));
        QCOMPARE(step(), 0);
        terminal_->progress.left = terminal_->progress.accepted;
        QCOMPARE(step(), 1);
        // On its way with the connection, perhaps: both once more, in their order, also when the
        // next one was found before the connection changed.
        QVERIFY(order("+7654321"));
        terminal_->progress.left = terminal_->progress.accepted;
        std::optional<CommandQueue::Taken> next;
        QTRY_VERIFY((next = queue_->step(terminal_->progress, 0)));
        terminal_->reconnect();
        terminal_->stuck = false;
        QVERIFY(commands_->addUserRestCommandDir(*next));
        queue_->sent(terminal_->progress);
        const QString twice = QStringLiteral("1927 1931 1927 1927 1931 1927");
        QTRY_COMPARE((step(), sent()), twice);
        QCOMPARE(waiting().size(), 3);
        queue_->setSettleTime(0);
        QTRY_VERIFY((step(), waiting().isEmpty()));
        QCOMPARE(sent(), twice);
        // Unread at the other end, as the controller has not answered yet.
        answering_ = 0;
        QVERIFY(order("-A1 -A2"));
        QTRY_COMPARE((step(), sent().count(QLatin1String("1931"))), 4);
        QCOMPARE((step(), step(), waiting().size()), 2);
        for (int left = 2; left-- > 0;) {
            answers_ = 1;
            QCOMPARE((step(), waiting().size()), left);
        }
        QCOMPARE(all(), QStringLiteral("1234567.jpg logo"));
    }

    void theOrderSurvivesTheClock() {
        const QDateTime noon(QDate(2031, 6, 1), QTime(12, 0));
        const QDateTime lost(QDate(1970, 1, 1), QTime(0, 0));
        const QDateTime last(QDate(2099, 12, 31), QTime(23, 59, 59, 998));
        for (const auto& times : {std::pair(noon, noon.addSecs(-3600)),
                                  {noon, noon},
                                  {noon, lost},
                                  {lost, noon},
                                  {last, noon}}) {
            init();
            QVERIFY(order("+A1", {}, CommandFolder([=] { return times.first; })));
            // Another process writes the second one.
            QVERIFY(order("-A1", {}, CommandFolder([=] { return times.second; })));
            QCOMPARE(step() + step(), 2);
            QCOMPARE(sent(), QStringLiteral("1927 1931"));
        }
        // A clock beyond its century only refuses.
        init();
        QDateTime now(QDate(2100, 1, 1), QTime(0, 0));
        CommandFolder writer([&now] { return now; });
        DoReceiveUserData user;
        user.cardNo = QStringLiteral("A1");
        QVERIFY(!writer.writeDelete(user.cardNo) && !writer.writeAdd(user, {}));
        now = now.addYears(-70);
        QVERIFY(writer.writeDelete(user.cardNo));
        QVERIFY(!all().isEmpty() && !all().contains(QLatin1Char(' ')));
    }

    /// Commands that come in while the folder is being read, which takes some time here.
    void commandsKeepTheirOrderWhileMoreComeIn() {
        for (int i = 0; i < 5000; ++i)
            TestRoot::write(path(QByteArray::number(i) + ".jpg"), {});
        constexpr int kCommands = 2000;
        std::thread writer([] {
            for (int i = 0; i < kCommands; ++i)
                QDir().mkdir(path(QByteArray::number(qint64{310101000000000} + i) + "_del_" +
                                  QByteArray::number(i)));
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
        QVERIFY(order("-A1"));
        const QString name = waiting().value(0);
        const QString inTheWay = path(".") + name;  // where the removal moves it to
        root_.write(inTheWay + QStringLiteral("/x"), {});
        QVERIFY(order("-A2 +A1"));
        queue_->setSettleTime(0);
        // A restart would repeat it: what was ordered for the same user later has to come behind.
        QTRY_COMPARE((step(), waiting().size()), 2);
        QCOMPARE(step() + step(), 0);
        QCOMPARE(waiting().value(0), name);
        QVERIFY(QDir(inTheWay).removeRecursively());
        QTRY_VERIFY((step(), waiting().isEmpty()));
        QCOMPARE(sent(), QStringLiteral("1931 1931 1927"));
    }

    void brokenAndUnfinishedCommandsAreSetAside() {
        for (const char* file : {".240101120000000_add_123456/123456.info", ".thumbnails/keep",
                                 "240101120000001_add_123456/123456.jpg",
                                 "240101120000002_mod_123456/x", "249901120000002_del_123456/x"})
            root_.write(path(file), {});
        QVERIFY(order("-A1"));
        QCOMPARE(step() + step(), 1);
        QCOMPARE(sent(), QStringLiteral("1931"));
        CommandFolder::removeUnfinished();
        queue_->setSettleTime(0);
        QTRY_VERIFY((step(), waiting().size() == 2));
        QCOMPARE(all(), QStringLiteral(".thumbnails 240101120000002_mod_123456 "
                                       "249901120000002_del_123456"));
    }

    void linksLeadNowhere() {
        const QString elsewhere = root_.path("/mnt/elsewhere/");
        const QStringList kept{elsewhere + QStringLiteral("123456.info"),
                               elsewhere + QStringLiteral("123456.jpg")};
        for (const QString& file : kept)
            root_.write(file, "kept");
        QVERIFY(order("+A1", "new"));
        const QString name = path("") + waiting().value(0);
        for (const QString& link : {path("000101000000000_del_A0"), path(".000101000000001_add_A0"),
                                    name + QStringLiteral("/x"), name + QStringLiteral("/y.info")})
            QVERIFY(QFile::link(elsewhere, link));
        QVERIFY(QFile::link(kept[1], path("A1.jpg")));
        queue_->setSettleTime(0);
        QTRY_VERIFY((step(), !QFileInfo::exists(name)));
        QCOMPARE(sent(), QStringLiteral("1927"));
        CommandFolder::removeUnfinished();
        QVERIFY(!QFileInfo(path("A1.jpg")).isSymLink());
        QCOMPARE(root_.read(path("A1.jpg")), QByteArray("new"));

        const QString input = root_.path("/mnt/data/input");
        for (const char* file : {"/zel01.tar.bz2", "/half/of/it", "/half.1"})
            root_.write(input + QLatin1String(file), {});
        QVERIFY(QFile::link(elsewhere, input + QStringLiteral("/folder")));
        QVERIFY(QFile::link(QStringLiteral("nowhere"), input + QStringLiteral("/.dangling")));
        DownloadManager().removeLeftovers();
        QCOMPARE(root_.namesIn(input), QStringList(QStringLiteral("zel01.tar.bz2")));
        const QString archive = input + QStringLiteral("/zel01.tar.bz2");
        QVERIFY(QFile::remove(archive) && QFile::link(kept[0], archive));
        DownloadManager().removeLeftovers();
        QCOMPARE(root_.namesIn(input), QStringList());
        QVERIFY(QDir().rename(input, elsewhere + QLatin1Char('i')));
        QVERIFY(QFile::link(elsewhere, input));
        DownloadManager().removeLeftovers();
        for (const QString& file : kept)
            QCOMPARE(root_.read(file), QByteArray("kept"));
    }

    void whatCannotBeReadJustNowStays() {
        terminal_->stuck = true;
        QVERIFY(order("+1234567 +7654321", "jpg"));
        QTRY_COMPARE((step(), sent()), QStringLiteral("1927"));
        terminal_->progress.left = terminal_->progress.accepted;
        rlimit files{};
        ::getrlimit(RLIMIT_NOFILE, &files);
        const rlimit none{0, files.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
        const int carriedOut = step();
        ::setrlimit(RLIMIT_NOFILE, &files);
        QCOMPARE(carriedOut, 0);
        QCOMPARE(waiting().size(), 2);
        QTRY_COMPARE((step(), sent()), QStringLiteral("1927 1927"));
    }

    void theFormerPictureStaysUntilItsTurn() {
        root_.write(path("A1.jpg"), "former");
        root_.write(path("000101000000000_add_A1/A1.jpg"), "of nobody");
        terminal_->stuck = true;
        terminal_->SendCommand(command::KeyClick, 0, 0);
        QVERIFY(order("+A1", "new"));
        QCOMPARE(step(), 0);
        QCOMPARE(root_.read(path("A1.jpg")), QByteArray("former"));
        terminal_->reconnect();
        QCOMPARE(step(), 1);
        QCOMPARE(root_.read(path("A1.jpg")), QByteArray("new"));
    }

    void firmwareOrdersOutliveTheProcess() {
        service_->answer = nullptr;
        const int number = orderFirmware("fw.bin");
        {
            Updater first(*terminal_);
            QTRY_COMPARE(service_->requests.size(), 1);
        }
        service_->answerWith("archive");
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
        QCOMPARE(root_.read(archive), QByteArray("archive"));
    }

    void anArchiveIsLeftUntilTheControllerHasAnswered() {
        Updater updater(*terminal_);
        const QString archive = updater.downloads.getArchivePath();
        const auto carryOut = [&](const char* name) {
            FR44_Parameter order;
            order.number = orderFirmware(name);
            order.address = FirmwareOrders::kept().last().address;
            updater.update.order(order);
        };
        carryOut("a");
        QVERIFY(told());
        carryOut("b");
        carryOut("c");
        QCoreApplication::processEvents();
        QVERIFY(root_.read(archive).startsWith("GET /a "));
        updater.update.answered();
        QVERIFY(told());
        QVERIFY(root_.read(archive).startsWith("GET /c "));
        QCOMPARE(FirmwareOrders::kept().size(), 1);
        updater.update.answered();
        QVERIFY(FirmwareOrders::kept().isEmpty());

        // One that fails, and a controller that says nothing.
        service_->says("HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n");
        updater.update.setAnswerTime(0);
        carryOut("d");
        QVERIFY(told());
        QVERIFY(!QFile::exists(archive) && FirmwareOrders::kept().isEmpty());
        carryOut("e");
        QTRY_COMPARE(service_->requests.size(), 5);
    }

    void firmwareOrdersHaveALimit() {
        for (int i = 1; i <= FirmwareOrders::kMost; ++i)
            QCOMPARE(orderFirmware("x"), i);
        QCOMPARE(orderFirmware("x"), 0);
        FirmwareOrders::remove(3);
        QCOMPARE(orderFirmware("x"), FirmwareOrders::kMost + 1);
    }
};

QTEST_GUILESS_MAIN(CloudCommandsTest)
#include "cloud_commands_test.moc"
