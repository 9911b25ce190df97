#include <arpa/inet.h>
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <future>
#include <memory>

#include "screens/facesearch/face_answer.h"
#include "screens/facesearch/fsv_client.h"
#include "screens/facesearch/fsv_tools.h"
#include "screens/facesearch/st_client.h"
#include "sim/facesearch/face_search_sim.h"

namespace {

struct Row {
    const char* name;
    std::size_t recordSize, offset, size, documentedOffset, documentedSize;
};
constexpr Row kRows[] = {
#define FIELD(record, member, documentedOffset, documentedSize, like)         \
    {#record "." #member,      sizeof(record),                                \
     offsetof(record, member), sizeof(static_cast<record*>(nullptr)->member), \
     documentedOffset,         documentedSize},
#include "face_search_doc_rows.inc"
#undef FIELD
};

/// Calls @p function in a thread of its own while this one keeps the simulated server going.
template <class Function>
auto aside(Function function) -> decltype(function()) {
    auto result = std::async(std::launch::async, function);
    while (result.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        QCoreApplication::processEvents();
    return result.get();
}

/// What a client is told, from its receive thread.
class Answers {
 public:
    explicit Answers(ST_Client& client) {
        client.ST_SetReceiveFunc([this](int kind, void* record) { take(kind, record); });
    }
    QString all() {
        const std::lock_guard<std::mutex> lock(lock_);
        return all_;
    }

 private:
    void take(int kind, const void* record) {
        QString text = QString::number(kind);
        if (record == nullptr) {
            text += QLatin1String(" nothing");
        } else if (kind == face_message::FaceInfo) {
            const auto* face = static_cast<const FaceInfoRecord*>(record);
            char name[kUtf8TextSize];
            EucKR2Utf8(face->name, sizeof face->name, name);
            text += QStringLiteral(" %1 %2").arg(face->requestId).arg(QString::fromUtf8(name));
        } else {
            const auto& image = kind == face_message::FaceImage
                                    ? static_cast<const FaceImageAnswer*>(record)->image
                                    : static_cast<const FaceInfoAndImageAnswer*>(record)->image;
            text += QLatin1String(image.size() > 500 && image[0] == 0xff ? " picture" : " rubbish");
        }
        const std::lock_guard<std::mutex> lock(lock_);
        all_ += text + QLatin1Char('|');
    }

    std::mutex lock_;
    QString all_;
};

const unsigned char kPicture[] = "abc";

/// The console program, in a folder of its own.
class ConsoleProgram : public QProcess {
 public:
    explicit ConsoleProgram(quint16 port) {
        QDir(parent.path()).mkdir(QStringLiteral("own"));
        setWorkingDirectory(folder.path());
        setProcessChannelMode(QProcess::MergedChannels);
        start(QStringLiteral(ZEL_BINARY_DIR "/bin/zel-face-search"),
              {QStringLiteral("127.0.0.1"), QString::number(port)});
        connect(this, &QProcess::readyRead, this, [this] { printed += readAll(); });
    }
    bool prints(const QByteArray& text, int times = 1) {
        return QTest::qWaitFor([&] { return printed.count(text) >= times; }, 60000);
    }
    /// Its status once it has ended by itself.
    int status() {
        const auto ended = [this] { return state() == QProcess::NotRunning; };
        return QTest::qWaitFor(ended, 30000) && exitStatus() == NormalExit ? exitCode() : -1;
    }
    int descriptors() const {
        return QDir(QStringLiteral("/proc/%1/fd").arg(processId()))
            .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
            .size();
    }

    QTemporaryDir parent;
    QDir folder{parent.filePath(QStringLiteral("own"))};
    QByteArray printed;
};

}  // namespace

/// The client against the simulated server, and the console program against it.
class FaceSearchTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        sim = std::make_unique<FaceSearchSim>(0, 0);
        QVERIFY(sim->listening());
        requests.clear();
        connect(sim.get(), &FaceSearchSim::requested, this,
                [this](int kind, const QByteArray& payload) {
                    requests.append({kind, payload});
                });
    }

    void theDocumentDescribesEveryRecordToTheLastByte() {
        std::size_t described = 0;
        for (std::size_t i = 0; i < std::size(kRows); ++i) {
            const Row& row = kRows[i];
            QVERIFY2(row.offset == row.documentedOffset && row.size == row.documentedSize,
                     row.name);
            QVERIFY2(row.offset == described || row.offset == 0, row.name);
            described = row.offset + row.size;
            if (i + 1 == std::size(kRows) || kRows[i + 1].offset == 0)
                QVERIFY2(described == row.recordSize, row.name);
        }
        QFile file(QStringLiteral(ZEL_SOURCE_DIR "/docs/face-search.md"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        for (const auto& [kind, name] : {std::pair(face_message::FaceInfo, "FaceInfo"),
                                         {face_message::FaceImage, "FaceImage"},
                                         {face_message::KeyExchange, "KeyExchange"},
                                         {face_message::FaceInfoAndImage, "FaceInfoAndImage"}})
            QVERIFY2(text.contains("| " + QByteArray::number(kind) + " | `" + name + '`'), name);
    }

    void requestsAndAnswersAreThoseOfTheProtocol() {
        ST_Client client("127.0.0.1", sim->port(), 0);
        Answers answers(client);
        QCOMPARE(client.ST_Connect(), 0);
        QVERIFY(client.isRunning());
        QCOMPARE(client.ST_RequestFaceInfo(7, 0x01020304, 0x1122334455667788, 9, 3, kPicture), 0);
        QCOMPARE(client.ST_RequestFaceImage(7, 5, "10000001"), 0);
        QCOMPARE(client.ST_RequestFaceInfoAndImage(7, 6, 0, 0, 0, nullptr), 0);
        QTRY_COMPARE(requests.size(), 3);
        const QByteArray face = requests.at(0).payload;
        QCOMPARE(face.left(13).toHex(), QByteArray("07040302018877665544332211"));
        QCOMPARE(face.mid(21).toHex(), "0100" + QByteArray(32, '0') + "040900000003000000616263");
        const QDateTime sent(QDate(2000 + face.at(13), face.at(14), face.at(15)),
                             QTime(face.at(16), face.at(17), face.at(18), face.at(19) * 10));
        QVERIFY(qAbs(sent.msecsTo(QDateTime::currentDateTime())) < 60000);
        QCOMPARE(requests.at(1).payload.left(25),
                 QByteArray("\7\5\0\0\0", 5) + "10000001" + QByteArray(12, '\0'));
        QTRY_COMPARE(answers.all(), QStringLiteral("1 16909060 홍길동|2 picture|4 picture|"));
        QVERIFY(client.ST_RequestFaceInfo(1, 1, 0, 0, -1, kPicture) != 0);
        client.ST_Close();
        QVERIFY(!client.isRunning());
        QVERIFY(client.ST_RequestFaceInfo(1, 1, 0, 0, 3, kPicture) != 0);
    }

    void textsAreCutAtWholeCharacters() {
        const QByteArray han("\xc8\xab", 2);  // 홍
        const std::pair<QByteArray, const char*> rows[] = {
            {han + han, "홍홍"},
            {han + QByteArray(1, '\0') + "x", "홍"},
            {han + "\xc8", "홍"},
            {"a\xff" + han, "a?홍"},
            {"\x1b[2J\x7f\n\x9b"
             "0m",
             "?[2J???0m"},
            {han.repeated(33) + "\xff\xff", "33"},  // as many as there is room for
            {"a" + han.repeated(50), "a32"},
        };
        for (const auto& [in, out] : rows) {
            char text[kUtf8TextSize];
            EucKR2Utf8(in.constData(), static_cast<std::size_t>(in.size()), text);
            QString shown = QString::fromUtf8(text);
            for (const int many : {33, 32})
                shown.replace(QStringLiteral("홍").repeated(many), QString::number(many));
            QCOMPARE(shown, QString::fromUtf8(out));
        }
    }

    void aHostileAnswerCostsNoMoreThanItself() {
        // The last ones end the connection, every other is followed by an answer as it should be.
        const std::pair<const char*, const char*> rows[] = {
            {"fault empty, tell", "1 0 홍길동|"},
            {"fault short, tell", "1 0 홍길동|"},
            {"fault unending, tell", "1 0 WWWWWWWWWWWWWWWWWWWW|1 0 홍길동|"},
            {"fault kind, tell", "9 nothing|1 0 홍길동|"},
            {"fault image, image", "1 0 홍길동|"},
            {"fault image, both", "1 0 홍길동|"},
            {"fault short, both", "1 0 홍길동|"},
            {"trickle 1, tell", "1 0 홍길동|1 0 홍길동|"},
            {"fault huge, tell", ""},
            {"fault cut, both", ""},
            {"trickle 1, fault cut, both", ""},
        };
        for (const auto& [words, told] : rows) {
            init();
            ST_Client client("127.0.0.1", sim->port(), 0);
            Answers answers(client);
            QCOMPARE(client.ST_Connect(), 0);
            QTRY_COMPARE(sim->clients(), 1);
            QVERIFY2(say(QLatin1String(words) + QStringLiteral(" 10000001")), words);
            QVERIFY(*told == '\0' || say("tell 10000001"));
            QTRY_COMPARE_WITH_TIMEOUT(answers.all(), QString::fromUtf8(told), 30000);
            QTRY_VERIFY2(client.isRunning() == (*told != '\0'), words);
        }
    }

    void ciphersSeeEachPayload() {
        ST_Client mute("127.0.0.1", sim->port(), 1);
        Answers none(mute);
        QCOMPARE(aside([&] { return mute.ST_Connect(); }), 0);
        QCOMPARE(requests.value(0).kind, 3);
        QCOMPARE(requests.value(0).payload.size(), 451);
        QCOMPARE(mute.ST_RequestFaceInfo(1, 1, 0, 0, 3, kPicture), 0);
        say("tell 10000001");

        ST_Client client("127.0.0.1", sim->port(), 1);
        CipherHooks hooks;
        hooks.decryptKey = [](const unsigned char*, int length, unsigned char*) { return length; };
        hooks.encrypt = hooks.decrypt = [](const unsigned char*, const unsigned char* in,
                                           int length, unsigned char* out) {
            std::copy(in, in + length, out);
            return length;
        };
        client.setCipherHooks(hooks);
        Answers answers(client);
        QCOMPARE(aside([&] { return client.ST_Connect(); }), 0);
        QCOMPARE(client.ST_RequestFaceInfo(1, 1, 0, 0, 3, kPicture), 0);
        QTRY_COMPARE(answers.all(), QStringLiteral("1 1 홍길동|"));
        QCOMPARE(requests.size(), 3);  // two keys and the request that is not empty
        QCOMPARE(none.all(), QString());
        QVERIFY(mute.isRunning());
        for (const char* fault : {"fault kind", "fault cut"}) {
            say(fault);
            QVERIFY2(aside([&] { return client.ST_Connect(); }) == -1, fault);
        }
    }

    void aServerWithoutRoomIsWaitedFor() {
        const int server = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in place{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
        socklen_t size = sizeof place;
        auto* const address = reinterpret_cast<sockaddr*>(&place);
        QVERIFY(::bind(server, address, size) == 0 && ::listen(server, 0) == 0 &&
                ::getsockname(server, address, &size) == 0);
        QTcpSocket first;
        first.connectToHost(QHostAddress::LocalHost, ntohs(place.sin_port));
        QVERIFY(first.waitForConnected());
        QTimer::singleShot(100, this, [server] { ::close(::accept(server, nullptr, nullptr)); });
        ST_Client client("127.0.0.1", ntohs(place.sin_port), 0);
        QCOMPARE(aside([&] { return client.ST_Connect(); }), 0);
        ::close(server);
    }

    void closingEndsWhateverWaits() {
        // For a message, within one, and for room to send.
        for (const char* words : {"", "trickle 3000, tell 10000001", "send"}) {
            init();
            ST_Client client("127.0.0.1", sim->port(), 0);
            QCOMPARE(client.ST_Connect(), 0);
            std::future<void> sending;
            if (*words == 's') {
                // Nobody reads, since the server's event loop does not run here.
                sending = std::async(std::launch::async, [&client] {
                    const std::vector<unsigned char> much(4 * 1024 * 1024);
                    while (client.ST_RequestFaceInfo(1, 1, 0, 0, 4 * 1024 * 1024, much.data()) ==
                           0) {
                    }
                });
                QVERIFY(sending.wait_for(std::chrono::milliseconds(300)) ==
                        std::future_status::timeout);
            } else {
                QTRY_COMPARE(sim->clients(), 1);
                QVERIFY(say(words));
            }
            QElapsedTimer timer;
            timer.start();
            client.ST_Close();
            // Far less than anything that the client would wait for by itself.
            QVERIFY(timer.elapsed() < 1000);
            QVERIFY(!client.isRunning());
        }
    }

    void theConsoleTellsWhatIsAnswered() {
        ConsoleProgram console(sim->port());
        QVERIFY(console.prints("Encrpt : 0\n"));
        console.write("/proc/self/exe\n/nowhere/at/all\n");
        QVERIFY(console.prints("Can not read /nowhere/at/all\n"));
        QVERIFY(console.prints(
            "kindOfApi : 1\nidx : 0, receive Size : 175\nRequest ID\t: 1\nConfidence\t: 95\n"
            "Person ID\t: 10000001\nName(utf8)\t: 홍길동\nPosition(utf8)\t: 부장\n"
            "Dept1(utf8)\t: 개발본부\nDept2(utf8)\t: 단말기팀\nDept3(utf8)\t: \nDept3(utf8)\t: "
            "\n"));
        QVERIFY(requests.value(0).payload.mid(49).startsWith("ELF"));
        // The end of the input waits for what was asked.
        say("delay 500");
        console.write(QByteArray(ZEL_SOURCE_DIR "/README.md"));
        console.closeWriteChannel();
        QCOMPARE(console.status(), 0);
        QVERIFY(console.prints("Request ID\t: 2\n"));

        say("away");
        ConsoleProgram lonely(sim->port());
        QCOMPARE(lonely.status(), 1);
        QCOMPARE(lonely.printed, QByteArray("Can not connect\n"));
    }

    void picturesStayInTheirFolder() {
        ConsoleProgram console(sim->port());
        QVERIFY(console.prints("Encrpt"));
        const QString kept = console.parent.filePath(QStringLiteral("kept"));
        QVERIFY(QFile::link(kept, console.folder.filePath(QStringLiteral("linked.jpg"))));
        QVERIFY(console.folder.mkdir(QStringLiteral("folder.jpg")));
        int refused = 0;
        for (const char* id :
             {"../escaped", ".hidden", "a/b", "folder", "bell\a", "..", "linked", "10000001"}) {
            QVERIFY(say(QStringLiteral("person %1 1 x, image %1").arg(QLatin1String(id))));
            QVERIFY(console.prints("Person ID : ", ++refused));
        }
        QVERIFY(console.prints("Saved image file: ./10000001.jpg\n"));
        QCOMPARE(console.printed.count("File Write Open Error\n"), 6);
        console.write("q\n");
        QCOMPARE(console.status(), 0);
        QCOMPARE(console.folder.entryList(QDir::Files | QDir::Hidden),
                 QStringList({QStringLiteral("10000001.jpg"), QStringLiteral("linked.jpg")}));
        QCOMPARE(QDir(console.parent.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        QVERIFY(!QFileInfo(console.folder.filePath(QStringLiteral("linked.jpg"))).isSymLink());
    }

    void tenThousandAnswersLeaveNothingBehind() {
        ConsoleProgram console(sim->port());
        QVERIFY(console.prints("Encrpt"));
        say("tell 10000001 10");
        QVERIFY(console.prints("Request ID", 10));
        const int before = console.descriptors();
        QVERIFY(say("tell 10000001 9900, image 10000001 50, both 10000001 50"));
        QVERIFY(console.prints("kindOfApi", 10010));
        QCOMPARE(console.descriptors(), before);
        console.write("q\n");
        // Under the sanitizers it says so when anything was lost.
        QVERIFY2(console.status() == 0, console.printed.right(2000).constData());
    }

    void aLostConnectionIsMadeAgain() {
        ConsoleProgram console(sim->port());
        QVERIFY(console.prints("Encrpt"));
        say("drop");
        QVERIFY(console.prints("socket read error! \n"));
        console.write("typed meanwhile\n");
        QVERIFY(console.prints("Can not send typed meanwhile\n"));
        QVERIFY(console.prints("Encrpt", 2));
        console.write("q\n");
        QCOMPARE(console.status(), 0);
    }

    void theTerminalsClientNeedsNobodyWhoReads() {
        int pipe[2];
        QCOMPARE(::pipe2(pipe, O_NONBLOCK), 0);
        while (::write(pipe[1], "full", 4) > 0) {
        }
        ::fcntl(pipe[1], F_SETFL, 0);
        // The log of a test goes there too.
        QLoggingCategory::setFilterRules(QStringLiteral("zel.*=false"));
        const int output = ::dup(STDOUT_FILENO);
        ::dup2(pipe[1], STDOUT_FILENO);
        int told = 0;
        {
            FsvClient client({"127.0.0.1", sim->port()});
            connect(&client, &FsvClient::recognised, this, [&told] { ++told; });
            client.start();
            while (sim->clients() == 0)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            say("tell 10000001 100");
            while (told == 0)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        ::dup2(output, STDOUT_FILENO);
        QLoggingCategory::setFilterRules(QString());
        for (const int descriptor : {pipe[0], pipe[1], output})
            ::close(descriptor);
    }

    void theTerminalsClientOutlivesItsConsole() {
        const char* const kPort = "ZEL_TEST_FACE_SEARCH_PORT";
        if (qEnvironmentVariableIsSet(kPort)) {
            // The program that has the console.
            FsvClient client(
                {"127.0.0.1", static_cast<quint16>(qEnvironmentVariableIntValue(kPort))});
            client.start();
            client.wait();
            return;
        }
        qputenv(kPort, QByteArray::number(sim->port()));
        int console = -1;
        const pid_t child = ::forkpty(&console, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execl("/proc/self/exe", "client", QTest::currentTestFunction(), nullptr);
            ::_exit(1);
        }
        qunsetenv(kPort);
        ::fcntl(console, F_SETFL, O_NONBLOCK);
        QByteArray printed;
        const auto connected = [&](int times) {
            char bytes[256];
            for (ssize_t got = 0; (got = ::read(console, bytes, sizeof bytes)) > 0;)
                printed.append(bytes, static_cast<int>(got));
            return printed.count("Encrpt") >= times;
        };
        QTRY_VERIFY(connected(1));
        const bool ended = ::write(console, "\4", 1) == 1;
        const bool goesOn = ended && QTest::qWaitFor([&] { return connected(2); });
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(console);
        QVERIFY(goesOn);
    }

 private:
    /// Has the simulated server carry words out, several with ", " between them.
    bool say(const QString& words) {
        const QStringList lines = words.split(QStringLiteral(", "), Qt::SkipEmptyParts);
        return std::all_of(lines.begin(), lines.end(), [this](const QString& line) {
            return sim->execute(line) == QLatin1String("ok");
        });
    }
    bool say(const char* words) { return say(QString::fromLatin1(words)); }

    struct Request {
        int kind;
        QByteArray payload;
    };
    std::unique_ptr<FaceSearchSim> sim;
    QVector<Request> requests;
};

QTEST_GUILESS_MAIN(FaceSearchTest)
#include "face_search_test.moc"
