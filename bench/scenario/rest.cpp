#include <time.h>

#include <QEventLoop>
#include <QHostAddress>
#include <QProcess>
#include <QTcpSocket>
#include <cstdio>
#include <vector>

#include <thread>

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
#include "sim/controller/device.h"

namespace {

constexpr int kRounds = 15;
constexpr int kRoundTime = 500;  // milliseconds

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
Load load(quint16 port, int connections) {
    const double before = serverTime();
    QProcess client;
    client.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QEventLoop loop;
    QObject::connect(&client, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    client.start(QStringLiteral(ZEL_BINARY_DIR "/bin/http_load"),
                 {QString::number(port), QStringLiteral("/cloud-service/rest-api/door-open.do"),
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

/// A terminal that has nothing to do with what is asked of it.
class IdleHost final : public CloudHost {
 public:
    _gui_menu_ settings() const override { return records_.menu(); }
    void parsingRestCommand(int, QVariant) override {}
    void updateRestConnectStatus(bool) override {}
    void completedRestCommand(QVariant) override {}
    std::uint32_t selfCheckWord() const override { return 0; }

    RecordStore& records() { return records_; }

 private:
    RecordStore records_;
};

/// Compares the server at @p port with the bare one.
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
        const Load plain = load(bare, connections);
        const Load alone = load(server, connections);
        const Load whole = load(terminal, connections);
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

}  // namespace

bool measureRest() {
    const quint16 barePort = freePort();
    const BareServer bare(barePort);

    _gui_menu_ settings = factorySettings();
    settings.managerControl = 1;
    IdleHost host;
    host.records().setMenu(settings);
    const quint16 serverPort = freePort();
    RestServer server({Pistache::Ipv4::loopback(), serverPort}, host);
    server.init(1);
    std::thread serving([&server] { server.start(); });

    MainWindow window;
    window.sendTestPacket(command::Settings, sizeof settings,
                          reinterpret_cast<const char*>(&settings));
    const quint16 terminalPort = DevicePaths::restPort();

    waitForServer(serverPort);
    waitForServer(terminalPort);
    bool measured = true;
    for (const int connections : {1, 8, 64})
        measured = measured && measure(barePort, serverPort, terminalPort, connections);
    server.shutdown();
    serving.join();
    return measured;
}
