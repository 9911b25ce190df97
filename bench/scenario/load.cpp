#include <QBuffer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QImage>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <deque>
#include <iterator>
#include <memory>
#include <thread>
#include <vector>

#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "link/command_code.h"
#include "sim/common/portrait.h"
#include "sim/controller/controller_sim.h"

namespace {

// In milliseconds.

/// Until the boot screen has gone and the controller has said what it has to say.
constexpr int kSettle = 10000;
constexpr int kMinute = 60000;
/// After a phase, until nothing of it is under way.
constexpr int kPause = 5000;
constexpr int kBetweenRequests = 10;
constexpr int kBetweenFrames = 100;
constexpr int kPatience = 2000;

constexpr double kWantedTime = 20;
constexpr std::size_t kKeptConnections = 40;
/// Orders that wait on the terminal's disk, or change its screens: they take it longer.
constexpr int kSlowOrders = 4;
constexpr int kRoundsBetweenSlowOrders = 16;

struct Order {
    const char* route;
    const char* body;
};

constexpr Order kOrders[] = {
    {"user-data-send.do", R"({"userInfo":{"user":{"name":"Kim"},"cardInfo":{"cardNo":"2000001"},)"
                          R"("faceVisible":{"visImg":"%1"}}})"},
    {"user-data-del.do", R"({"userInfo":{"cardInfo":{"cardNo":"2000001"}}})"},
    {"device-fw-update.do", R"({"firmFile":"/none.zip"})"},
    {"system-set.do", R"({"system":"deleteLogData"})"},
    {"user-data-get.do", R"({"userInfo":{"cardInfo":{"cardNo":"10000001"}}})"},
    {"time-set.do", R"({"TimeSettings":{"Date":"2031-12-24","Time":"23:59:58"}})"},
    {"device-set.do", R"({"DeviceSettings":{"DoorOpenDuration":"3"}})"},
    {"door-open.do", ""},
    {"user-group-info.do", ""},
    {"device-status.do", ""},
    {"run-enroll-mode.do", R"({"userInfo":{"user":{"name":"Lee"},"cardInfo":{"cardNo":"30000"}}})"},
    {"run-recognize-mode.do", ""},
    {"user-list-get.do", ""},
};

constexpr const char* kBrokenBodies[] = {
    "{", "[[[[", "null", "{\"userInfo\":[]}", R"({"DeviceSettings":{"DeviceNo":{}}})", "\xff\xfe",
};

QByteArray request(const Order& order, const QByteArray& body, const char* connection) {
    return QByteArray("POST /cloud-service/rest-api/") + order.route +
           " HTTP/1.1\r\nHost: localhost\r\nConnection: " + connection +
           "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

/// Clients of the REST server that do what clients do, good and bad, in a thread of their own.
class Clients {
 public:
    explicit Clients(quint16 port) : port_(port), picture_(portrait::jpeg(1).toBase64()) {}

    void start() {
        stopped_ = false;
        thread_ = std::thread([this] { run(); });
    }
    void stop() {
        stopped_ = true;
        thread_.join();
    }
    int answers() const { return answers_; }

 private:
    void run() {
        std::deque<std::unique_ptr<QTcpSocket>> kept;
        while (!stopped_) {
            ++number_;
            const Order& order = nextOrder();
            const QByteArray body = QByteArray(order.body).replace("%1", picture_);
            const QByteArray broken = kBrokenBodies[number_ % std::size(kBrokenBodies)];
            send(request(order, body, "close"));
            send(request(order, broken, "close"));
            kept.push_back(send(request(order, broken, "keep-alive")));
            const QByteArray whole = request(order, body, "close");
            kept.push_back(send(whole.left(whole.size() / 2), 0));
            while (kept.size() > kKeptConnections)
                kept.pop_front();
        }
    }

    const Order& nextOrder() {
        const std::size_t quick = std::size(kOrders) - kSlowOrders;
        if (number_ % kRoundsBetweenSlowOrders == 0)
            return kOrders[number_ / kRoundsBetweenSlowOrders % kSlowOrders];
        return kOrders[kSlowOrders + number_ % quick];
    }

    /// Sends @p bytes and waits for something to come back.
    std::unique_ptr<QTcpSocket> send(const QByteArray& bytes, int patience = kPatience) {
        std::this_thread::sleep_for(std::chrono::milliseconds(kBetweenRequests));
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port_);
        if (socket->waitForConnected(kPatience)) {
            socket->write(bytes);
            while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(kPatience)) {
            }
            if (patience > 0 && socket->waitForReadyRead(patience))
                ++answers_;
        }
        return socket;
    }

    const quint16 port_;
    const QByteArray picture_;
    std::size_t number_ = 0;
    std::atomic<int> answers_{0};
    std::atomic<bool> stopped_{false};
    std::thread thread_;
};

/// Asks the terminal something over the link again and again, and times the answers.
class LinkWatch : public QObject {
 public:
    LinkWatch(ControllerSim& controller, const Program& terminal) {
        connect(&controller, &ControllerSim::frameReceived, this, [this, &terminal](quint16 code) {
            if (code != command::AskUnsentUsers || !asked_.isValid())
                return;
            // This thread is the controller's too, and now and then draws somebody's picture.
            times_.push_back(static_cast<double>(asked_.nsecsElapsed()) / 1e6 -
                             (clockTime(CLOCK_THREAD_CPUTIME_ID) - ownBefore_));
            ownTimes_.push_back(terminal.mainThreadTime() - before_);
            asked_.invalidate();
        });
        connect(&timer_, &QTimer::timeout, this, [this, &controller, &terminal] {
            // One that is not answered counts by the time that the next ones had to wait.
            if (asked_.isValid())
                return;
            before_ = terminal.mainThreadTime();
            ownBefore_ = clockTime(CLOCK_THREAD_CPUTIME_ID);
            asked_.start();
            controller.execute(QStringLiteral("unsent"));
        });
        timer_.start(kBetweenFrames);
    }

    /// Milliseconds until the answers came, less those that this thread worked meanwhile.
    const std::vector<double>& times() const { return times_; }
    /// Milliseconds that the thread which answers ran until then; where they are fewer by far,
    /// somebody else had the processor.
    const std::vector<double>& ownTimes() const { return ownTimes_; }

 private:
    QTimer timer_;
    QElapsedTimer asked_;
    double before_ = 0;
    double ownBefore_ = 0;
    std::vector<double> times_;
    std::vector<double> ownTimes_;
};

struct Resources {
    explicit Resources(const Program& program)
        : memory(program.residentMemory()),
          threads(program.threads()),
          descriptors(program.descriptors()) {}

    double memory;  // MB
    int threads;
    int descriptors;
};

void printGrowth(const char* title, const Resources& before, const Resources& after) {
    Figures::title(title);
    Figures::row("resident memory", after.memory - before.memory, "MB", "wanted: none");
    Figures::row("threads", after.threads - before.threads, "", "wanted: none");
    Figures::row("descriptors", after.descriptors - before.descriptors, "", "wanted: none");
}

}  // namespace

bool measureLoad() {
    const int minutes = QCoreApplication::arguments().value(2, QStringLiteral("10")).toInt();
    ControllerSim controller(DevicePaths::linkPort(), 0,
                             DevicePaths::at(QStringLiteral("/mnt/data")));
    controller.execute(QStringLiteral("settings network.own.managerAddress 127.0.0.1"));
    Program terminal("zel-terminal", {QStringLiteral("-platform"), QStringLiteral("offscreen")});
    runEvents(kSettle);
    if (!controller.terminalConnected())
        return false;
    const LinkWatch link(controller, terminal);
    Clients clients(DevicePaths::restPort());
    const auto resourcesAfter = [&](int time) {
        clients.start();
        runEvents(time);
        clients.stop();
        runEvents(kPause);
        return Resources(terminal);
    };
    const Resources warm = resourcesAfter(minutes * kMinute / 5);
    const Resources half = resourcesAfter(minutes * kMinute * 2 / 5);
    const Resources end = resourcesAfter(minutes * kMinute * 2 / 5);

    Figures::title("Mixed load");
    Figures::row("time", minutes, "min");
    Figures::row("requests answered", clients.answers(), "");
    Figures::row("resident memory at the end", end.memory, "MB");
    printGrowth("Growth, first half behind the warm-up", warm, half);
    printGrowth("Growth, second half", half, end);

    const std::vector<double>& times = link.times();
    if (times.empty())
        return false;
    Figures::title("Frames over the link meanwhile");
    Figures::row("answered", static_cast<double>(times.size()), "");
    Figures::row("median", Figures::median(times), "ms");
    const auto longest = [](const std::vector<double>& some) {
        return *std::max_element(some.begin(), some.end());
    };
    const auto late =
        std::count_if(times.begin(), times.end(), [](double time) { return time > kWantedTime; });
    Figures::row("longest", longest(times), "ms", "wanted: at most 20");
    Figures::row("above 20 ms", static_cast<double>(late), "", "wanted: none");
    Figures::row("longest time of the answering thread", longest(link.ownTimes()), "ms");
    return terminal.runFor(0);
}
