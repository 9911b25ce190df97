#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QHostAddress>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>
#include <QtTest>
#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "app/main_window.h"
#include "app/window_form.h"
#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/scenarios.h"
#include "link/command_code.h"
#include "sim/controller/device.h"
#include "sim/controller/terminal_link.h"
#include "ui/label_button.h"

namespace {

constexpr int kUsers = 10000;
constexpr int kPicture = 30000;               // bytes
constexpr int kPatience = 10000;              // milliseconds
constexpr unsigned int kBetweenTouches = 50;  // milliseconds
constexpr double kWantedTime = 50;            // milliseconds

/// A controller that takes users as fast as they come and says so, in a thread of its own.
class Controller {
 public:
    explicit Controller(const QElapsedTimer& clock) : clock_(clock) {
        thread_.reset(QThread::create([this] {
            TerminalLink link(nullptr);
            link.listen(DevicePaths::linkPort());
            _gui_menu_ settings = factorySettings();
            settings.managerControl = 1;
            const QByteArray record(reinterpret_cast<const char*>(&settings), sizeof settings);
            QObject::connect(&link, &TerminalLink::frameReceived, &link, [&](quint16 command) {
                if (command == command::Greeting)
                    link.send(command::Settings, 0, 0, record);
                if (command != command::EnrolNetworkUser)
                    return;
                link.send(command::SettingsChanged, 0, 0, record);
                last_ = clock_.elapsed();
                ++users_;
            });
            QEventLoop().exec();
        }));
        thread_->start();
    }
    ~Controller() {
        thread_->quit();
        thread_->wait();
    }
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    int users() const { return users_; }
    /// When the latest one came, in milliseconds of the clock.
    qint64 last() const { return last_; }

 private:
    const QElapsedTimer& clock_;
    std::atomic<int> users_{0};
    std::atomic<qint64> last_{0};
    std::unique_ptr<QThread> thread_;
};

/// Sends all users over one connection and returns how many were accepted.
int sendUsers(int users) {
    QByteArray picture(kPicture, '\0');
    for (char& byte : picture)
        byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
    const QByteArray image = picture.toBase64();
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), DevicePaths::restPort());
    socket.waitForConnected(kPatience);
    int accepted = 0;
    for (int number = 0; number < users; ++number) {
        const QByteArray body = R"({"userInfo":{"user":{"name":"Kim"},"cardInfo":{"cardNo":")" +
                                QByteArray::number(1000000 + number) +
                                R"("},"faceVisible":{"visImg":")" + image + "\"}}}";
        socket.write(
            "POST /cloud-service/rest-api/user-data-send.do HTTP/1.1\r\nHost: x\r\n"
            "Connection: keep-alive\r\n"
            "Content-Length: " +
            QByteArray::number(body.size()) + "\r\n\r\n" + body);
        QByteArray answer;
        while (!answer.contains("resultMessage") && socket.waitForReadyRead(kPatience))
            answer += socket.readAll();
        accepted += answer.contains("\"1000\"") ? 1 : 0;
    }
    return accepted;
}

/// Milliseconds that this process's first thread has waited for a processor so far.
double timeInQueue() {
    // The second field, in nanoseconds.
    QFile statistics(QStringLiteral("/proc/self/task/%1/schedstat").arg(::getpid()));
    return statistics.open(QIODevice::ReadOnly)
               ? statistics.readAll().split(' ').value(1).toDouble() / 1e6
               : 0;
}

/// Presses a button of the live view again and again, told to by another thread, and takes the time
/// from that thread's word until the button is painted, less the time in which somebody else had
/// the processor.
class Touches : public QObject {
 public:
    explicit Touches(MainWindow& window) : window_(window) {
        thread_.reset(QThread::create([this] {
            while (!stopped_) {
                // A touch that is not answered counts by the time that the next ones have to wait.
                if (!under_.exchange(true)) {
                    queued_ = timeInQueue();
                    since_.start();
                    QMetaObject::invokeMethod(
                        this, [this] { press(); }, Qt::QueuedConnection);
                }
                QThread::msleep(kBetweenTouches);
            }
        }));
        thread_->start();
    }
    ~Touches() override { stop(); }

    void stop() {
        stopped_ = true;
        thread_->wait();
    }
    const std::vector<double>& times() const { return times_; }
    /// The same with the time of others.
    const std::vector<double>& wholeTimes() const { return wholeTimes_; }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            const double time = static_cast<double>(since_.nsecsElapsed()) / 1e6;
            wholeTimes_.push_back(time);
            // It may have been waiting for a while when the touch came.
            times_.push_back(std::max(time - (timeInQueue() - queued_), 0.0));
            QTimer::singleShot(0, this, [this] { lift(); });
        }
        return QObject::eventFilter(watched, event);
    }

 private:
    void press() {
        window_.changeWindow(QStringLiteral("liveWindow"));
        auto* const button =
            window_.getActivateWindowForm()->findChild<LabelButton*>(QStringLiteral("menuButton"));
        button->installEventFilter(this);
        QTest::mousePress(window_.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          button->mapTo(&window_, button->rect().center()));
    }
    /// Lifted elsewhere the finger starts nothing.
    void lift() {
        QTest::mouseMove(window_.windowHandle(), QPoint(1, 1));
        QTest::mouseRelease(window_.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 1));
        under_ = false;
    }

    MainWindow& window_;
    QElapsedTimer since_;
    double queued_ = 0;
    std::atomic<bool> under_{false};
    std::atomic<bool> stopped_{false};
    std::vector<double> times_;
    std::vector<double> wholeTimes_;
    std::unique_ptr<QThread> thread_;
};

}  // namespace

bool measureOrders() {
    const int users = QCoreApplication::arguments().value(2, QString::number(kUsers)).toInt();
    QElapsedTimer clock;
    clock.start();
    Controller controller(clock);
    MainWindow window;
    window.show();
    while (!window.settingsArrived())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);

    Touches touches(window);
    const qint64 begun = clock.elapsed();
    std::atomic<int> accepted{0};
    const std::unique_ptr<QThread> service(
        QThread::create([&accepted, users] { accepted = sendUsers(users); }));
    service->start();
    while (!service->isFinished() ||
           (controller.users() < accepted && clock.elapsed() - controller.last() < kPatience))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    touches.stop();
    const double time = static_cast<double>(controller.last() - begun) / 1e3;

    Figures::title("Users with pictures of 30 KB, sent by the management service");
    Figures::row("sent", users, "");
    Figures::row("accepted", accepted, "");
    Figures::row("told to the controller", controller.users(), "");
    Figures::row("first request to last user told", time, "s");
    Figures::row("rate", controller.users() / time, "/s", "wanted: at least 20");
    const std::vector<double>& times = touches.times();
    const auto late =
        std::count_if(times.begin(), times.end(), [](double each) { return each > kWantedTime; });
    const auto longest = [](const std::vector<double>& some) {
        return *std::max_element(some.begin(), some.end());
    };
    Figures::title("Touches meanwhile, from the finger to the painted button");
    Figures::row("answered", static_cast<double>(times.size()), "");
    Figures::row("median", Figures::median(times), "ms");
    Figures::row("longest", longest(times), "ms", "wanted: at most 50");
    Figures::row("above 50 ms", static_cast<double>(late), "", "wanted: none");
    Figures::row("longest with the time of others", longest(touches.wholeTimes()), "ms");
    return accepted == users && controller.users() == users;
}
