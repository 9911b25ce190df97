#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QLibraryInfo>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QtTest>
#include <memory>
#include <vector>

#include "link/command_code.h"
#include "link/device_records.h"
#include "link/frame.h"
#include "tests/support/program.h"

namespace {

/// The program, talking to a controller that the test plays.
class Terminal : public Program {
 public:
    Terminal() {
        controller.listen(QHostAddress::LocalHost);
        qputenv("ZEL_LINK_PORT", QByteArray::number(controller.serverPort()));
    }

    /// Whether the greeting has come.
    bool greeted() {
        if (socket == nullptr && controller.waitForNewConnection(10000))
            socket = controller.nextPendingConnection();
        const QByteArray greeting = Frame::build(command::Greeting, 0, 0);
        return socket != nullptr &&
               QTest::qWaitFor([&] { return received().startsWith(greeting); }, 5000);
    }
    const QByteArray& received() { return received_ += socket->readAll(); }
    void say(const QByteArray& bytes) {
        socket->write(bytes);
        socket->flush();
    }
    /// A connection of the HTTP port.
    std::unique_ptr<QTcpSocket> client() const {
        auto client = std::make_unique<QTcpSocket>();
        const bool served = QTest::qWaitFor([&] {
            client->connectToHost(QHostAddress::LocalHost, restPort);
            return client->waitForConnected(100);
        });
        if (!served)
            qFatal("nobody is served");
        return client;
    }
    QByteArray fromKernel(const char* name) const {
        QFile file(QStringLiteral("/proc/%1/%2").arg(processId()).arg(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Whether main() has begun: from then on a signal is kept until it can be served.
    bool holdsSignals() const {
        return QTest::qWaitFor([this] {
            const QByteArray text = fromKernel("status");
            const QByteArray mask = text.mid(text.indexOf("SigBlk:") + 7, 17).trimmed();
            return (mask.toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1) != 0;
        });
    }
    /// Whether its first thread has had the processor for @p milliseconds, or has come as far as
    /// the connection.
    bool hasWorked(qint64 milliseconds) const {
        return QTest::qWaitFor([&] {
            return fromKernel("schedstat").split(' ')[0].toLongLong() >= milliseconds * 1000000 ||
                   controller.hasPendingConnections();
        });
    }
    /// Whether it has ended by itself with status 0, and @p quietly: without a word in its log that
    /// is neither the project's own nor a missing link's.
    bool endsOrderly(bool quietly = true) {
        const bool ended =
            waitForFinished(20000) && exitStatus() == QProcess::NormalExit && exitCode() == 0;
        output = readAllStandardOutput();
        errors = readAllStandardError();
        const QRegularExpression ours(QStringLiteral("^(zel\\.|rm: |ln: |$)"));
        const QStringList lines = QString::fromUtf8(errors).split(QLatin1Char('\n'));
        return ended && (!quietly || lines.filter(ours) == lines);
    }

    QTcpServer controller;
    QTcpSocket* socket = nullptr;
    QByteArray output;
    QByteArray errors;

 private:
    QByteArray received_;
};

/// An orderly end takes less than this, in milliseconds.
constexpr qint64 kPrompt = 1000;

}  // namespace

class ProcessTest : public QObject {
    Q_OBJECT

 private slots:
    void endsOnEverySignal() {
        // So many milliseconds of work into the start, or -1: when it is up.
        const std::pair<int, int> rows[] = {
            {SIGQUIT, -1}, {SIGINT, -1},  {SIGTERM, -1}, {SIGHUP, -1},  {SIGTERM, 0},
            {SIGTERM, 10}, {SIGTERM, 20}, {SIGTERM, 30}, {SIGTERM, 45}, {SIGTERM, 60},
            {SIGINT, 0},   {SIGINT, 15},  {SIGINT, 40}};
        for (const auto& [number, delay] : rows) {
            Terminal terminal;
            terminal.start();
            QVERIFY(terminal.waitForStarted());
            if (delay < 0)
                QVERIFY(terminal.greeted() && terminal.client());
            else
                QVERIFY(terminal.holdsSignals() && terminal.hasWorked(delay));
            QElapsedTimer time;
            time.start();
            terminal.signal(number);
            QVERIFY2(terminal.endsOrderly(), terminal.errors.constData());
            // An early one waits for the start to be over, which takes as long as the machine
            // takes.
            QVERIFY(delay >= 0 || time.elapsed() < kPrompt);
            QCOMPARE(terminal.output,
                     "\nquit the application by signal(" + QByteArray::number(number) + ").\n");
        }
    }

    // The acknowledgement is on the wire before the process is gone, also when the order is the
    // first thing that the controller ever says, and with a request half sent.
    void endsOnTheControllersOrder() {
        for (const bool early : {true, false}) {
            Terminal terminal;
            terminal.start();
            QVERIFY(terminal.greeted());
            std::unique_ptr<QTcpSocket> slowClient;
            if (!early) {
                slowClient = terminal.client();
                slowClient->write(
                    "POST /cloud-service/rest-api/door-open.do HTTP/1.1\r\nContent-Le");
                QVERIFY(slowClient->flush());
            }
            QElapsedTimer time;
            time.start();
            terminal.say(Frame::build(command::Quit, 0, 0));
            QVERIFY2(terminal.endsOrderly(), terminal.errors.constData());
            QVERIFY(time.elapsed() < kPrompt);
            QTRY_VERIFY(
                terminal.received().endsWith(Frame::build(command::QuitAcknowledged, 0, 0)));
        }
    }

    // What is printed goes into a pipe that is full, or that nobody reads any more.
    void endsUnheard() {
        for (const bool full : {true, false}) {
            Terminal terminal;
            const QByteArray pipe = QFile::encodeName(terminal.root.path("/output"));
            QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
            const int reader = ::open(pipe.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
            terminal.setStandardOutputFile(QFile::decodeName(pipe));
            terminal.start();
            QVERIFY(terminal.greeted());
            while (full && ::write(reader, "full", 4) > 0) {
            }
            if (!full)
                ::close(reader);
            terminal.signal(SIGTERM);
            QVERIFY2(terminal.endsOrderly(), terminal.errors.constData());
            if (full)
                ::close(reader);
        }
    }

    // With few files to be had it serves fewer clients, and does not give up.
    void livesWithFewDescriptors() {
        Terminal terminal;
        const QStringList program = QStringList(terminal.program()) + terminal.arguments();
        terminal.setProgram(QStringLiteral("/bin/sh"));
        terminal.setArguments(
            QStringList{QStringLiteral("-c"), QStringLiteral("ulimit -n 64; exec \"$0\" \"$@\"")} +
            program);
        terminal.start();
        QVERIFY(terminal.greeted());
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int i = 0; i < 100; ++i) {
            clients.push_back(terminal.client());
            clients.back()->write("POST /");
            QVERIFY(clients.back()->flush());
        }
        const auto last = terminal.client();
        last->write("POST /x HTTP/1.1\r\n\r\n");
        QVERIFY(last->waitForReadyRead(5000));
        QVERIFY(last->readAll().startsWith("HTTP/1.1 404"));
        terminal.signal(SIGTERM);
        QVERIFY2(terminal.endsOrderly(), terminal.errors.constData());
    }

    // Without fonts, pictures and scripts, with a root that cannot be written, with the HTTP port
    // taken and garbage on the link: it lives, and still ends in order.
    void livesThroughABadMorning() {
        Terminal terminal;
        for (const char* folder : {"/zel1", "/usr/img", "/usr/lib/fonts"})
            QVERIFY(QDir(terminal.root.path(folder)).removeRecursively());
        // A file where a folder should be cannot be written into by anybody, root included.
        terminal.root.write("/usr/img", "");
        QTcpServer occupant;
        QVERIFY(occupant.listen(QHostAddress::AnyIPv4, terminal.restPort));
        terminal.start();
        QVERIFY(terminal.greeted());
        QByteArray garbage(100000, '\xC5');
        for (int i = 0; i < garbage.size(); i += 3)
            garbage[i] = static_cast<char>(i);
        terminal.say(garbage + Frame::build(command::Settings, 0, 0, 3, "abc") +
                     Frame::build(command::SelfCheck, 0, 0, 1, "a") + QByteArray(2200, '\0') +
                     Frame::build(command::FullLogsDeleted, 0, 0));
        QTRY_VERIFY(terminal.received().endsWith(Frame::build(command::AskUnsentLogs, 0, 0)));
        terminal.signal(SIGTERM);
        QVERIFY2(terminal.endsOrderly() && terminal.errors.contains("script_list.json") &&
                     terminal.errors.contains(QByteArray::number(terminal.restPort)),
                 terminal.errors.constData());
    }

    // The panel's own full-screen path, on a virtual screen where its plug-in can be had.
    void runsFullScreen() {
        if (!QFileInfo::exists(
                QLibraryInfo::location(QLibraryInfo::PluginsPath) +
                QStringLiteral("/egldeviceintegrations/libqeglfs-x11-integration.so")) ||
            QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty())
            QSKIP("no virtual screen for the panel's plug-in");
        QProcess screen;
        screen.start(QStringLiteral("/bin/sh"),
                     {QStringLiteral("-c"),
                      QStringLiteral("exec Xvfb -displayfd 1 -screen 0 480x800x24 -nolisten tcp")});
        QVERIFY(screen.waitForReadyRead(10000));
        qputenv("DISPLAY", ':' + screen.readAllStandardOutput().trimmed());
        qputenv("QT_QPA_EGLFS_INTEGRATION", "eglfs_x11");
        Terminal terminal;
        terminal.setArguments({});
        terminal.start();
        QVERIFY(terminal.greeted());
        terminal.signal(SIGTERM);
        QVERIFY2(terminal.endsOrderly(false), terminal.errors.constData());
        screen.terminate();
        screen.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(ProcessTest)
#include "process_test.moc"
