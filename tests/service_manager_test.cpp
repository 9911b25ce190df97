#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QtTest>

#include "app/service_manager.h"
#include "base/version.h"
#include "tests/support/program.h"

namespace {

/// A service manager's ear, as a small supervisor has one.
class Ear {
 public:
    Ear() {
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        std::copy(address.begin(), address.end(), name.sun_path);
        ::bind(socket_, reinterpret_cast<const sockaddr*>(&name), sizeof name);
    }
    ~Ear() { ::close(socket_); }
    /// What is said next; empty when nothing comes in time.
    QByteArray next(int patience = 20000) {
        char bytes[100];
        ssize_t got = -1;
        const bool heard = QTest::qWaitFor(
            [&] { return (got = ::recv(socket_, bytes, sizeof bytes, MSG_DONTWAIT)) >= 0; },
            patience);
        return heard ? QByteArray(bytes, static_cast<int>(got)) : QByteArray();
    }

    /// How much was said and not heard yet, which is forgotten.
    int drain() {
        int count = 0;
        char byte = 0;
        while (::recv(socket_, &byte, 1, MSG_DONTWAIT) >= 0)
            ++count;
        return count;
    }

    QTemporaryDir folder;
    const QByteArray address = QFile::encodeName(folder.filePath(QStringLiteral("notify")));

 private:
    const int socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

}  // namespace

/// The terminal's program as a service.
class ServiceManagerTest : public QObject {
    Q_OBJECT

 private slots:
    void aBlockedEventLoopIsNotAlive() {
        Ear ear;
        qputenv("NOTIFY_SOCKET", ear.address);
        qputenv("WATCHDOG_USEC", "3000000");
        qputenv("WATCHDOG_PID", QByteArray::number(QCoreApplication::applicationPid()));
        ServiceManager manager;
        QVERIFY(!qEnvironmentVariableIsSet("NOTIFY_SOCKET"));
        manager.start();
        QCOMPARE(ear.next(), QByteArray("READY=1"));
        QCOMPARE(ear.next(), QByteArray("WATCHDOG=1"));
        // Each round of the event loop takes too long, and what is asked waits for its end.
        ear.drain();
        int rounds = 0;
        QTimer busy;
        connect(&busy, &QTimer::timeout, this, [&rounds] {
            QThread::msleep(2100);
            ++rounds;
        });
        busy.start(0);
        while (rounds < 3)
            QCoreApplication::processEvents();
        QVERIFY(ear.drain() <= 1);
        busy.stop();
        QCOMPARE(ear.next(), QByteArray("WATCHDOG=1"));
    }

    /// Stopped, or with its GUI thread blocked.
    void aHungTerminalIsStartedAgain() {
        Ear ear;
        qputenv("NOTIFY_SOCKET", ear.address);
        qputenv("WATCHDOG_USEC", "1000000");
        qunsetenv("WATCHDOG_PID");
        qputenv("LD_PRELOAD", BLOCKED_GUI);
        for (const int signal : {SIGSTOP, SIGUSR1}) {
            Program program;
            program.start();
            QCOMPARE(ear.next(), QByteArray("READY=1"));
            for (int i = 0; i < 3; ++i)
                QCOMPARE(ear.next(), QByteArray("WATCHDOG=1"));
            program.signal(signal);
            while (!ear.next(2000).isEmpty()) {
            }
            program.kill();
            QVERIFY(program.waitForFinished());

            program.start();
            QCOMPARE(ear.next(), QByteArray("READY=1"));
            program.terminate();
            QByteArray last;
            do
                last = ear.next();
            while (last == "WATCHDOG=1");
            QCOMPARE(last, QByteArray("STOPPING=1"));
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), 0);
        }
        qunsetenv("LD_PRELOAD");
    }

    void theCommandLineTellsAndNothingMore() {
        const std::tuple<const char*, int, QByteArray> rows[] = {
            {"--version", 0, QByteArray("zel-terminal ") + programVersion() + '\n'},
            {"--help", 0, "usage: zel-terminal"},
            {"--kiosk", 2, "usage: zel-terminal"}};
        for (const auto& [argument, status, words] : rows) {
            Program program;
            // With what gives it a screen only where it may be mistaken for an argument of Qt's.
            program.setArguments(QStringList(QLatin1String(argument)) +
                                 program.arguments().mid(status == 2 ? 0 : 2));
            program.setProcessChannelMode(QProcess::MergedChannels);
            program.start();
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), status);
            const QByteArray printed = program.readAll();
            QVERIFY2(printed.contains(words), printed.constData());
        }
    }
};

QTEST_GUILESS_MAIN(ServiceManagerTest)
#include "service_manager_test.moc"
