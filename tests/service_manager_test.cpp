#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QProcess>
#include <QTcpServer>
#include <QtTest>
#include <memory>

#include "app/service_manager.h"
#include "base/version.h"
#include "sim/device_root.h"

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
    QByteArray next() {
        char bytes[100];
        ssize_t got = -1;
        const bool heard = QTest::qWaitFor(
            [&] {
                got = ::recv(socket_, bytes, sizeof bytes, MSG_DONTWAIT);
                return got >= 0;
            },
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
    int patience = 20000;

 private:
    const int socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

QProcessEnvironment ownRoot(const DeviceRoot& root) {
    QTcpServer link;
    QTcpServer rest;
    link.listen(QHostAddress::LocalHost);
    rest.listen(QHostAddress::LocalHost);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZEL_ROOT"), root.path(""));
    environment.insert(QStringLiteral("ZEL_LINK_PORT"), QString::number(link.serverPort()));
    environment.insert(QStringLiteral("ZEL_REST_PORT"), QString::number(rest.serverPort()));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), root.path(""));
    return environment;
}

const QString kProgram = QStringLiteral(ZEL_BINARY_DIR "/bin/zel-terminal");

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
            QThread::msleep(ServiceManager::kLongestWait + 100);
            ++rounds;
        });
        busy.start(0);
        while (rounds < 3)
            QCoreApplication::processEvents();
        QVERIFY(ear.drain() <= 1);
        busy.stop();
        QCOMPARE(ear.next(), QByteArray("WATCHDOG=1"));
    }

    void aHungTerminalIsStartedAgain_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("stopped") << SIGSTOP;
        QTest::newRow("GUI thread blocked") << SIGUSR1;
    }
    void aHungTerminalIsStartedAgain() {
        QFETCH(int, signal);
        const DeviceRoot root;
        Ear ear;
        QProcess process;
        QProcessEnvironment environment = ownRoot(root);
        environment.insert(QStringLiteral("NOTIFY_SOCKET"), QFile::decodeName(ear.address));
        environment.insert(QStringLiteral("WATCHDOG_USEC"), QStringLiteral("1000000"));
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(BLOCKED_GUI));
        process.setProcessEnvironment(environment);
        process.start(kProgram, {QStringLiteral("-platform"), QStringLiteral("offscreen")});
        QCOMPARE(ear.next(), QByteArray("READY=1"));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(ear.next(), QByteArray("WATCHDOG=1"));
        ::kill(static_cast<pid_t>(process.processId()), signal);
        ear.patience = 2000;
        while (!ear.next().isEmpty()) {
        }
        process.kill();
        QVERIFY(process.waitForFinished());

        ear.patience = 20000;
        process.start();
        QCOMPARE(ear.next(), QByteArray("READY=1"));
        process.terminate();
        QByteArray last;
        do
            last = ear.next();
        while (last == "WATCHDOG=1");
        QCOMPARE(last, QByteArray("STOPPING=1"));
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
    }

    void theCommandLineTellsAndNothingMore_data() {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("version") << QStringLiteral("--version") << 0
                                 << QByteArray("zel-terminal ") + programVersion() + '\n';
        QTest::newRow("help") << QStringLiteral("--help") << 0 << QByteArray("usage: zel-terminal");
        QTest::newRow("other") << QStringLiteral("--kiosk") << 2
                               << QByteArray("usage: zel-terminal");
    }
    void theCommandLineTellsAndNothingMore() {
        const DeviceRoot root;
        QFETCH(QString, argument);
        QProcess process;
        QProcessEnvironment environment = ownRoot(root);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        QStringList arguments(argument);
        if (argument == QLatin1String("--kiosk"))
            arguments << QStringLiteral("-platform") << QStringLiteral("offscreen");
        process.start(kProgram, arguments);
        QVERIFY(process.waitForFinished());
        QTEST(process.exitCode(), "status");
        QFETCH(QByteArray, words);
        const QByteArray printed = process.readAll();
        QVERIFY2(printed.contains(words), printed.constData());
    }
};

QTEST_GUILESS_MAIN(ServiceManagerTest)
#include "service_manager_test.moc"
