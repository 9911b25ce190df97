#include <sqlite3.h>
#include <time.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QTcpSocket>
#include <cstdio>
#include <thread>
#include <vector>

#include "app/main_window.h"
#include "app/record_store.h"
#include "base/device_paths.h"
#include "bench/scenario/bare_server.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "cloud/cloud_host.h"
#include "cloud/rest_server.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "sim/controller/device.h"
#include "sim/controller/user_store.h"

namespace {

constexpr int kRounds = 15;
constexpr int kRoundTime = 500;  // milliseconds
constexpr int kUsers = 10000;
constexpr char kDoorOpen[] = "door-open.do";

struct Load {
    double rate = 0;        // answers a second
    double percentile = 0;  // the 99th of their times, microseconds
    double cost = 0;        // CPU time of an answer, microseconds
};

double seconds(clockid_t clock) {
    timespec now{};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// CPU time of the servers' threads: all but this one, which carries out what is asked for.
double serverTime() {
    return seconds(CLOCK_PROCESS_CPUTIME_ID) - seconds(CLOCK_THREAD_CPUTIME_ID);
}

/// Puts the server at @p port under load from another process, while this one's events go on.
Load load(quint16 port, const char* route, int connections) {
    const double before = serverTime();
    QProcess client;
    client.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QEventLoop loop;
    QObject::connect(&client, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    client.start(
        QStringLiteral(ZEL_BINARY_DIR "/bin/http_load"),
        {QString::number(port), QStringLiteral("/cloud-service/rest-api/") + QLatin1String(route),
         QString::number(connections), QString::number(kRoundTime)});
    if (!client.waitForStarted())
        return {};
    loop.exec();
    const QList<QByteArray> figures = client.readAll().trimmed().split(' ');
    if (figures.size() != 2)
        return {};
    const double rate = figures[0].toDouble();
    return {rate, figures[1].toDouble(), (serverTime() - before) * 1e9 / (rate * kRoundTime)};
}

void waitForServer(quint16 port) {
    QTcpSocket socket;
    do {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    } while (!socket.waitForConnected());
}

/// Those of a terminal that its manager may command.
_gui_menu_ settings() {
    _gui_menu_ settings = factorySettings();
    settings.managerControl = 1;
    return settings;
}

/// A terminal that has nothing to do with what is asked of it.
class IdleHost final : public CloudHost {
 public:
    _gui_menu_ settings() const override { return records_.menu(); }
    bool settingsCurrent() const override { return true; }
    void parsingRestCommand(int, QVariant) override {}
    void updateRestConnectStatus(bool) override {}
    void completedRestCommand(QVariant) override {}
    std::uint32_t selfCheckWord() const override { return 0; }

    RecordStore& records() { return records_; }

 private:
    RecordStore records_;
};

/// The REST server alone, in a thread of its own.
class LoneServer {
 public:
    LoneServer() : server_({Pistache::Ipv4::loopback(), port_}, host_) {
        host_.records().setMenu(settings());
        server_.init(1);
        thread_ = std::thread([this] { server_.start(); });
        waitForServer(port_);
    }
    ~LoneServer() {
        server_.shutdown();
        thread_.join();
    }
    LoneServer(const LoneServer&) = delete;
    LoneServer& operator=(const LoneServer&) = delete;

    quint16 port() const { return port_; }

 private:
    const quint16 port_ = freePort();
    IdleHost host_;
    RestServer server_;
    std::thread thread_;
};

/// How a server does beside the bare one.
struct Comparison {
    void add(const Load& own, const Load& plain) {
        rates.push_back(own.rate);
        rateRatios.push_back(own.rate / plain.rate);
        percentileRatios.push_back(own.percentile / plain.percentile);
        costRatios.push_back(own.cost / plain.cost);
    }
    void print(const char* name, bool judged) const {
        const auto row = [name](const char* what, const std::vector<double>& values,
                                const char* unit, const char* wanted) {
            Figures::row(qUtf8Printable(QLatin1String(name) + QLatin1String(what)),
                         Figures::median(values), unit, wanted);
        };
        row("", rates, "/s", "");
        row(": ratio", rateRatios, "", judged ? "wanted: at least 0.9" : "");
        row(": ratio of the 99th percentiles", percentileRatios, "",
            judged ? "wanted: at most 1.2" : "");
        row(": ratio of CPU times", costRatios, "", "");
    }

    std::vector<double> rates;
    std::vector<double> rateRatios;
    std::vector<double> percentileRatios;
    std::vector<double> costRatios;
};

bool measure(quint16 bare, quint16 server, quint16 terminal, int connections) {
    std::vector<double> bareRates;
    Comparison ofServer;
    Comparison ofTerminal;
    for (int round = 0; round < kRounds; ++round) {
        const Load plain = load(bare, kDoorOpen, connections);
        const Load alone = load(server, kDoorOpen, connections);
        const Load whole = load(terminal, kDoorOpen, connections);
        if (plain.rate == 0 || alone.rate == 0 || whole.rate == 0)
            return false;
        bareRates.push_back(plain.rate);
        ofServer.add(alone, plain);
        ofTerminal.add(whole, plain);
    }
    Figures::title(
        qUtf8Printable(QStringLiteral("Opening the door over %1 connections").arg(connections)));
    Figures::row("bare handler", Figures::median(bareRates), "/s");
    ofServer.print("server", true);
    ofTerminal.print("with the main window", false);
    return true;
}

// --- The list of users ---------------------------------------------------------------------

void storeUsers() {
    UserStore users(DevicePaths::at(QStringLiteral("/mnt/data")));
    const int present = users.users().size();
    for (int number = present; number < kUsers; ++number) {
        _gui_user_ user{};
        setFieldText(user.userId, QString::number(10000000 + number));
        setFieldText(user.name, QStringLiteral("Kim Seoyeon"));
        users.store(user);
    }
}

/// Milliseconds that a program takes which wants the identifiers and nothing else; -1 when it does
/// not get them all.
double timeOfQuery() {
    const QByteArray path =
        QFile::encodeName(DevicePaths::at(QStringLiteral("/mnt/data/db_user2/DB_userT.bin")));
    QElapsedTimer timer;
    timer.start();
    sqlite3* database = nullptr;
    sqlite3_stmt* query = nullptr;
    int users = 0;
    sqlite3_open_v2(path.constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(database, "SELECT * FROM USER_T WHERE MARK<160;", -1, &query, nullptr);
    while (sqlite3_step(query) == SQLITE_ROW)
        users += sqlite3_column_text(query, 1) != nullptr ? 1 : 0;
    sqlite3_finalize(query);
    sqlite3_close(database);
    return users == kUsers ? static_cast<double>(timer.nsecsElapsed()) / 1e6 : -1;
}

}  // namespace

bool measureRest() {
    const quint16 barePort = freePort();
    const BareServer bare(barePort);
    const LoneServer server;
    MainWindow window;
    const _gui_menu_ record = settings();
    window.sendTestPacket(command::Settings, sizeof record, reinterpret_cast<const char*>(&record));
    waitForServer(DevicePaths::restPort());
    for (const int connections : {1, 8, 64}) {
        if (!measure(barePort, server.port(), DevicePaths::restPort(), connections))
            return false;
    }
    return true;
}

bool measureUsers() {
    storeUsers();
    const LoneServer server;
    std::vector<double> queries;
    std::vector<double> answers;
    std::vector<double> ratios;
    for (int round = 0; round < kRounds; ++round) {
        std::vector<double> times;
        const QDeadlineTimer deadline(kRoundTime);
        while (!deadline.hasExpired())
            times.push_back(timeOfQuery());
        const Load list = load(server.port(), "user-list-get.do", 1);
        if (times.front() < 0 || list.rate == 0)
            return false;
        queries.push_back(Figures::median(times));
        answers.push_back(1e3 / list.rate);
        ratios.push_back(answers.back() / queries.back());
    }
    Figures::title("The list of 10,000 users");
    Figures::row("bare query", Figures::median(queries), "ms");
    Figures::row("answer", Figures::median(answers), "ms");
    Figures::row("ratio", Figures::median(ratios), "", "wanted: at most 1.5");
    return true;
}
