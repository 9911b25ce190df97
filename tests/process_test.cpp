#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>
#include <memory>
#include <vector>

#include "link/command_code.h"
#include "link/device_records.h"
#include "link/frame.h"
#include "sim/device_root.h"
#include "tests/support/free_port.h"

namespace {

/// The real program, in a root of its own, talking to a controller that the test plays.
class Terminal {
 public:
    explicit Terminal(const QStringList& arguments = {QStringLiteral("-platform"),
                                                      QStringLiteral("offscreen")}) {
        controller.listen(QHostAddress::LocalHost);
        restPort = freePort();
        qputenv("ZEL_LINK_PORT", QByteArray::number(controller.serverPort()));
        qputenv("ZEL_REST_PORT", QByteArray::number(restPort));
        qputenv("XDG_RUNTIME_DIR", qgetenv("ZEL_ROOT"));
        process.setArguments(arguments);
        process.setProgram(QStringLiteral(ZEL_BINARY_DIR "/bin/zel-terminal"));
    }
    ~Terminal() {
        process.kill();
        process.waitForFinished();
    }

    void start() { process.start(); }
    /// Has the process live with @p number files and connections.
    void limitDescriptors(int number) {
        const QString shell = QStringLiteral("ulimit -n %1; exec \"$0\" \"$@\"").arg(number);
        process.setArguments(QStringList{QStringLiteral("-c"), shell, process.program()} +
                             process.arguments());
        process.setProgram(QStringLiteral("/bin/sh"));
    }
    /// Whether the greeting has come.
    bool greeted() {
        if (socket == nullptr) {
            if (!controller.waitForNewConnection(10000))
                return false;
            socket = controller.nextPendingConnection();
        }
        return QTest::qWaitFor([this] { return read().startsWith(greeting); }, 5000);
    }
    QByteArray read() {
        received += socket->readAll();
        return received;
    }
    /// Whether the HTTP port takes connections.
    bool serves() {
        return QTest::qWaitFor(
            [this] {
                QTcpSocket probe;
                probe.connectToHost(QHostAddress::LocalHost, restPort);
                return probe.waitForConnected(100);
            },
            5000);
    }
    /// Whether main() has begun: from then on a signal is kept until it can be served.
    bool holdsSignals() {
        return QTest::qWaitFor([this] {
            QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
            if (!status.open(QIODevice::ReadOnly))
                return false;
            const QByteArray text = status.readAll();
            const QByteArray mask = text.mid(text.indexOf("SigBlk:") + 7, 17).trimmed();
            return (mask.toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1) != 0;
        });
    }
    /// Whether its first thread has had the processor for @p milliseconds, or has come as far as
    /// the connection.
    bool hasWorked(qint64 milliseconds) {
        return QTest::qWaitFor([&] {
            QFile time(QStringLiteral("/proc/%1/schedstat").arg(process.processId()));
            return (time.open(QIODevice::ReadOnly) &&
                    time.readAll().split(' ').first().toLongLong() >= milliseconds * 1000000) ||
                   controller.hasPendingConnections();
        });
    }
    void signal(int number) { ::kill(static_cast<pid_t>(process.processId()), number); }
    /// Milliseconds until the process has ended by itself with status 0, or -1.
    qint64 endsOrderly() {
        QElapsedTimer time;
        time.start();
        if (!process.waitForFinished(20000) || process.exitStatus() != QProcess::NormalExit ||
            process.exitCode() != 0)
            return -1;
        output = process.readAllStandardOutput();
        errors = process.readAllStandardError();
        return time.elapsed();
    }
    /// What the log says that is neither the project's own nor a missing link's.
    QByteArray foreignLines() const {
        QByteArray foreign;
        for (const QByteArray& line : errors.split('\n')) {
            if (!line.isEmpty() && !line.startsWith("zel.") && !line.startsWith("rm: ") &&
                !line.startsWith("ln: "))
                foreign += line + '\n';
        }
        return foreign;
    }

    const QByteArray greeting = Frame::build(command::Greeting, 0, 0);
    DeviceRoot root;
    QProcess process;
    QTcpServer controller;
    QTcpSocket* socket = nullptr;
    quint16 restPort = 0;
    QByteArray received;
    QByteArray output;
    QByteArray errors;
};

/// An orderly end takes less than this, in milliseconds.
constexpr qint64 kPrompt = 1000;

}  // namespace

class ProcessTest : public QObject {
    Q_OBJECT

 private slots:
    void endsOnEverySignal_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("delay");  // milliseconds of work into the start; -1: when it is up
        for (const int number : {SIGQUIT, SIGINT, SIGTERM, SIGHUP})
            QTest::addRow("%d", number) << number << -1;
        for (const int delay : {0, 10, 20, 30, 45, 60})
            QTest::addRow("early %d", delay) << SIGTERM << delay;
        for (const int delay : {0, 15, 40})
            QTest::addRow("early interrupt %d", delay) << SIGINT << delay;
    }

    void endsOnEverySignal() {
        QFETCH(int, number);
        QFETCH(int, delay);
        Terminal terminal;
        terminal.start();
        QVERIFY(terminal.process.waitForStarted());
        if (delay < 0) {
            QVERIFY(terminal.greeted());
            QVERIFY(terminal.serves());
        } else {
            QVERIFY(terminal.holdsSignals());
            QVERIFY(terminal.hasWorked(delay));
        }
        terminal.signal(number);
        const qint64 time = terminal.endsOrderly();
        QVERIFY2(time >= 0, terminal.errors.constData());
        // An early one waits for the start to be over, which takes as long as the machine takes.
        QVERIFY2(delay >= 0 || time < kPrompt, QByteArray::number(time).constData());
        QCOMPARE(terminal.output,
                 "\nquit the application by signal(" + QByteArray::number(number) + ").\n");
        QCOMPARE(terminal.foreignLines(), QByteArray());
    }

    // The acknowledgement is on the wire before the process is gone, also when the order is the
    // first thing that the controller ever says, and with a request half sent.
    void endsOnTheControllersOrder() {
        for (const bool early : {true, false}) {
            Terminal terminal;
            terminal.start();
            QVERIFY(terminal.greeted());
            QTcpSocket slowClient;
            if (!early) {
                QVERIFY(terminal.serves());
                slowClient.connectToHost(QHostAddress::LocalHost, terminal.restPort);
                QVERIFY(slowClient.waitForConnected());
                slowClient.write(
                    "POST /cloud-service/rest-api/door-open.do HTTP/1.1\r\nContent-Le");
                slowClient.flush();
            }
            terminal.socket->write(Frame::build(command::Quit, 0, 0));
            terminal.socket->flush();
            const qint64 time = terminal.endsOrderly();
            QVERIFY2(time >= 0 && time < kPrompt, QByteArray::number(time).constData());
            QTRY_VERIFY(terminal.read().endsWith(Frame::build(command::QuitAcknowledged, 0, 0)));
            QCOMPARE(terminal.foreignLines(), QByteArray());
        }
    }

    // What is printed goes into a pipe that is full, or that nobody reads any more.
    void endsUnheard() {
        for (const bool full : {true, false}) {
            Terminal terminal;
            const QByteArray pipe = QFile::encodeName(terminal.root.path("/output"));
            QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
            const int reader = ::open(pipe.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
            terminal.process.setStandardOutputFile(QFile::decodeName(pipe));
            terminal.start();
            QVERIFY(terminal.greeted());
            while (full && ::write(reader, "full", 4) > 0) {
            }
            if (!full)
                ::close(reader);
            terminal.signal(SIGTERM);
            QVERIFY(terminal.endsOrderly() >= 0);
            if (full)
                ::close(reader);
        }
    }

    // With few files to be had it serves fewer clients, and does not give up.
    void livesWithFewDescriptors() {
        Terminal terminal;
        terminal.limitDescriptors(64);
        terminal.start();
        QVERIFY(terminal.greeted());
        QVERIFY(terminal.serves());
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int i = 0; i < 100; ++i) {
            clients.push_back(std::make_unique<QTcpSocket>());
            clients.back()->connectToHost(QHostAddress::LocalHost, terminal.restPort);
            QVERIFY(clients.back()->waitForConnected());
            clients.back()->write("POST /");
            clients.back()->flush();
        }
        QTcpSocket last;
        last.connectToHost(QHostAddress::LocalHost, terminal.restPort);
        last.write("POST /x HTTP/1.1\r\n\r\n");
        QVERIFY(last.waitForReadyRead(5000));
        QVERIFY(last.readAll().startsWith("HTTP/1.1 404"));
        terminal.signal(SIGTERM);
        QVERIFY(terminal.endsOrderly() >= 0);
    }

    // Without fonts, pictures and scripts, with a root that cannot be written, with the HTTP port
    // taken and garbage on the link: it lives, and still ends in order.
    void livesThroughABadMorning() {
        Terminal terminal;
        QProcess::execute(QStringLiteral("rm"),
                          {QStringLiteral("-r"), terminal.root.path("/zel1"),
                           terminal.root.path("/usr/img"), terminal.root.path("/usr/lib/fonts")});
        // A file where a folder should be cannot be written into by anybody, root included.
        terminal.root.write("/usr/img", "");
        QTcpServer occupant;
        QVERIFY(occupant.listen(QHostAddress::AnyIPv4, terminal.restPort));
        terminal.start();
        QVERIFY(terminal.greeted());
        QByteArray garbage(100000, '\xC5');
        for (int i = 0; i < garbage.size(); i += 3)
            garbage[i] = static_cast<char>(i);
        terminal.socket->write(garbage);
        terminal.socket->write(Frame::build(command::Settings, 0, 0, 3, "abc"));
        terminal.socket->write(Frame::build(command::SelfCheck, 0, 0, 1, "a"));
        terminal.socket->write(QByteArray(2200, '\0') +
                               Frame::build(command::FullLogsDeleted, 0, 0));
        terminal.socket->flush();
        QTRY_VERIFY(terminal.read().endsWith(Frame::build(command::AskUnsentLogs, 0, 0)));
        terminal.signal(SIGTERM);
        QVERIFY(terminal.endsOrderly() >= 0);
        QVERIFY2(terminal.errors.contains("script_list.json"), terminal.errors.constData());
        QVERIFY2(terminal.errors.contains(QByteArray::number(terminal.restPort)),
                 terminal.errors.constData());
        QCOMPARE(terminal.foreignLines(), QByteArray());
    }

    // The panel's own full-screen path, on a virtual screen where its plug-in can be had.
    void runsFullScreen() {
        const QString plugin =
            QLibraryInfo::location(QLibraryInfo::PluginsPath) +
            QStringLiteral("/egldeviceintegrations/libqeglfs-x11-integration.so");
        const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
        if (!QFileInfo::exists(plugin) || xvfb.isEmpty())
            QSKIP("no virtual screen for the panel's plug-in");
        QProcess screen;
        screen.start(
            xvfb, {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                   QStringLiteral("0"), QStringLiteral("480x800x24"), QStringLiteral("-nolisten"),
                   QStringLiteral("tcp")});
        QVERIFY(screen.waitForReadyRead(10000));
        Terminal terminal(QStringList{});
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(
            QStringLiteral("DISPLAY"),
            QLatin1Char(':') + QString::fromLatin1(screen.readAllStandardOutput()).trimmed());
        environment.insert(QStringLiteral("QT_QPA_EGLFS_INTEGRATION"), QStringLiteral("eglfs_x11"));
        terminal.process.setProcessEnvironment(environment);
        terminal.start();
        QVERIFY(terminal.greeted());
        terminal.signal(SIGTERM);
        QVERIFY2(terminal.endsOrderly() >= 0, terminal.process.readAllStandardError().constData());
        screen.terminate();
        screen.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(ProcessTest)
#include "process_test.moc"
