#include <malloc.h>
#include <sqlite3.h>

#include <QDateTime>
#include <QDir>
#include <QHostAddress>
#include <QPixmapCache>
#include <QTcpSocket>
#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <thread>

#include "app/screen_titles.h"
#include "base/clock.h"
#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "cloud/command_folder.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_terminal.h"
#include "ui/widget_button.h"

namespace {

constexpr int kHours = 24;
constexpr int kNoon = 11;  // the twelfth hour
constexpr int kRecognitions = 20000;
constexpr int kTours = 500;
constexpr int kEnrolments = 200;
constexpr int kRequests = 10000;

// In milliseconds.
constexpr int kPatience = 10000;
/// After an hour, until connections that were cut have gone.
constexpr int kPause = 5000;
/// Before what counts: threads that wait for work end after half a minute.
constexpr int kLongPause = 35000;

/// What the process holds.
struct Holdings {
    double memory = residentMemory(QStringLiteral("self"));  // MB
    double allocated = 0;                                    // MB
    int threads = 0;
    int descriptors = 0;

    Holdings() {
        const struct mallinfo2 info = ::mallinfo2();
        allocated = static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
        const auto count = [](const char* folder) {
            return QDir(QLatin1String(folder))
                .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                .size();
        };
        threads = count("/proc/self/task");
        descriptors = count("/proc/self/fd");
    }
};

void printGrowth(const char* title, const Holdings& before, const Holdings& after) {
    Figures::title(title);
    Figures::row("resident memory", after.memory - before.memory, "MB", "wanted: none");
    Figures::row("allocated", after.allocated - before.allocated, "MB", "wanted: none");
    Figures::row("threads", after.threads - before.threads, "", "wanted: none");
    Figures::row("descriptors", after.descriptors - before.descriptors, "", "wanted: none");
}

bool waitFor(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(kPatience);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// 1 for what has failed, which is named then.
int did(bool succeeded, const char* what, int number) {
    if (!succeeded)
        std::printf("%s %d failed\n", what, number);
    return succeeded ? 0 : 1;
}

/// A day's share of an hour.
int share(int day, int hour) {
    return day * (hour + 1) / kHours - day * hour / kHours;
}

/// The terminal with its peers, and what people and the management service do with it.
class Day {
 public:
    Day() : service_(0, 0, {QStringLiteral("127.0.0.1"), 0}) {}

    bool begin() {
        t.root.write("/mnt/data/rebootchkr", {});
        const QString port = QString::number(service_.port());
        return t.tell("enrol-pace 0") &&
               t.set({{"setup.operation", QStringLiteral("0")},
                      {"setup.language", QStringLiteral("1")},
                      {"network.own.managerAddress", QStringLiteral("127.0.0.1")},
                      {"network.own.managerPort", port},
                      {"network.useManager", QStringLiteral("1")}}) &&
               t.start() && QTest::qWaitFor([this] { return t.window->serviceReached(); });
    }

    /// Has a face or a card at the door recognised or not, up to what is seen of it.
    bool recognise(int number) {
        static constexpr const char* kWords[] = {
            "face 01023456789", "face 01098765432",        "card 10000003", "face unknown",
            "face 01044447777", "face 01023456789 denied", "card 99999999", "card 10000005",
        };
        const char* const words = kWords[number % static_cast<int>(std::size(kWords))];
        // An order of the service may take the screen away; whoever it was looks once more.
        bool shown = false;
        for (int attempt = 0; attempt < 2 && !shown; ++attempt) {
            goTo(screen_title::kLive);
            // The camera runs as soon as the controller has heard of the live view.
            const bool told = waitFor([&] { return t.tell(words); });
            shown = told && (std::strstr(words, " 0") == nullptr ||
                             waitFor([this] { return t.title() == screen_title::kResult; }));
        }
        repaint();
        return shown;
    }

    /// Touches the menu, another tile of it each time, and all that there is behind that.
    bool tour(int number) {
        goTo(screen_title::kLive);
        t.tap("menuButton");
        if (t.title() != screen_title::kMenu)
            return false;
        const QStringList tiles = waysOn();
        t.tap(qUtf8Printable(tiles.at(number % tiles.size())));
        goDown();
        return true;
    }

    /// Enrols somebody with a card and a face, from the live view.
    bool enrol(int number) {
        const auto touch = [this](const char* button) {
            return waitFor([&] { return t.find(button) != nullptr; }) && (t.tap(button), true);
        };
        const auto says = [this](const char* key) { return waitFor([&] { return t.says(key); }); };
        goTo(screen_title::kLive);
        t.tap("enrollButton");
        return t.settle() && touch("forwardButton") && t.shows("userEnroll_cardTagWindow") &&
               t.settle() && t.tell(QStringLiteral("card %1").arg(30000000 + number)) &&
               says("Dialog_AddFaceToCard") && touch("dialogOkButton") &&
               t.shows("userEnroll_FaceWindow") && t.settle() && t.tell("enrol-face good") &&
               says("Dialog_RegFaceComplete") && touch("dialogOkButton") && t.shows("stayWindow");
    }

    /// Those of a share of the requests that were answered; to be called in a thread of its own.
    static int request(int from, int count) {
        int answered = 0;
        for (int number = from; number < from + count; ++number) {
            const QByteArray card = QByteArray::number(2000000 + number / 10);
            const QByteArray user =
                R"({"userInfo":{"user":{"name":"Kim"},"cardInfo":{"cardNo":")" + card + R"("}}})";
            const QByteArray settings = R"({"DeviceSettings":{"DoorOpenDuration":"5"}})";
            const std::pair<const char*, QByteArray> kinds[] = {
                {"user-data-send.do", user}, {"device-status.do", {}}, {"user-list-get.do", {}},
                {"user-group-info.do", {}},  {"door-open.do", {}},     {"user-data-get.do", user},
                {"device-set.do", settings}, {"no-such.do", {}},       {"device-status.do", "{["},
                {"user-data-del.do", user},
            };
            const auto& [route, body] = kinds[number % static_cast<int>(std::size(kinds))];
            QTcpSocket socket;
            socket.connectToHost(QHostAddress(QHostAddress::LocalHost), DevicePaths::restPort());
            socket.write("POST /cloud-service/rest-api/" + QByteArray(route) +
                         " HTTP/1.1\r\nHost: x\r\nConnection: close\r\nContent-Length: " +
                         QByteArray::number(body.size()) + "\r\n\r\n" + body);
            answered += socket.waitForReadyRead(kPatience) ? 1 : 0;
        }
        return answered;
    }

    /// Waits until all orders have been carried out.
    bool settle() {
        goTo(screen_title::kStandby);
        return QTest::qWaitFor(
            [] {
                return QDir(CommandFolder::directory())
                    .entryList({QStringLiteral("*_???_*")}, QDir::Dirs)
                    .isEmpty();
            },
            kPatience);
    }

    /// Whoever came in the hour goes, and what is under way ends.
    bool rest(int time) {
        goTo(screen_title::kStandby);
        const bool gone = t.tell("users 7");
        runEvents(time);
        t.frames.clear();
        return gone;
    }

    DrivenTerminal t;

 private:
    void goTo(const QString& title) {
        DialogOverlay::closeAll(t.window.get());
        t.window->changeWindow(title);
        QCoreApplication::processEvents();
        t.frames.clear();
    }
    void goDown() {
        repaint();
        const QString here = t.title();
        if (here == screen_title::kMenu)
            return;
        for (const QString& way : waysOn()) {
            t.tap(qUtf8Printable(way));
            const QString there = t.title();
            // What leads back up would lead round and round.
            if (there != here && there != screen_title::kStandby && !above_.contains(there)) {
                above_.append(here);
                goDown();
                above_.removeLast();
            }
            goTo(here);
        }
    }
    void repaint() {
        t.window->getActivateWindowForm()->update();
        QCoreApplication::processEvents();
    }
    /// The names of what leads elsewhere on the active screen, but for the factory tests, behind
    /// which no screen times out any more.
    QStringList waysOn() const {
        QStringList ways;
        for (const WidgetButton* each :
             t.window->getActivateWindowForm()->findChildren<WidgetButton*>()) {
            const QString target = each->property("target").toString();
            if (each->isVisible() && each->isEnabled() && !each->objectName().isEmpty() &&
                t.window->getWindow(target) != nullptr && !target.startsWith(QLatin1String("f_")))
                ways.append(each->objectName());
        }
        return ways;
    }

    ServiceSim service_;
    QStringList above_;  // screens on the way to the active one
};

}  // namespace

bool measureDay() {
    // The simulated controller's stores are in this process: what they cache of their growing files
    // has to be all there after the first hour, or it looks like the terminal's.
    constexpr sqlite3_int64 kMostOfStores = 256 * 1024;
    sqlite3_soft_heap_limit64(kMostOfStores);
    // A part of a day shows whether everything works.
    const int part = qMax(1, QCoreApplication::arguments().value(2, QStringLiteral("1")).toInt());
    Day day;
    if (!day.begin())
        return false;
    int recognised = 0;
    int toured = 0;
    int enrolled = 0;
    int asked = 0;
    std::atomic<int> answered{0};
    int failed = 0;
    Holdings first;
    Holdings noon;
    Holdings last;
    for (int hour = 0; hour < kHours; ++hour) {
        const QDateTime now(QDate(2026, 3, 9), QTime(hour, 0));
        Clock::fix(now);
        day.t.tell(now.toString(QStringLiteral("'time 'yyyy-MM-dd hh:mm")));
        const int requests = share(kRequests / part, hour);
        std::thread client(
            [&answered, asked, requests] { answered += Day::request(asked, requests); });
        for (int i = share(kRecognitions / part, hour); i > 0; --i, ++recognised)
            failed += did(day.recognise(recognised), "recognition", recognised);
        // The orders of the service change screens, so that no finger goes through menus meanwhile.
        std::atomic<bool> done{false};
        std::thread waiting([&] {
            client.join();
            done = true;
        });
        while (!done)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
        waiting.join();
        asked += requests;
        failed += did(day.settle(), "orders", hour);
        for (int i = share(kTours / part, hour); i > 0; --i, ++toured)
            failed += did(day.tour(toured), "tour", toured);
        for (int i = share(kEnrolments / part, hour); i > 0; --i, ++enrolled)
            failed += did(day.enrol(enrolled), "enrolment", enrolled);
        const bool counts = hour == 0 || hour == kNoon || hour + 1 == kHours;
        failed += did(day.rest(counts ? kLongPause : kPause), "rest", hour);
        // Pictures that nobody shows are decoded again when they are wanted.
        if (counts)
            QPixmapCache::clear();
        last = Holdings();
        if (hour == 0)
            first = last;
        if (hour == kNoon)
            noon = last;
        std::printf("hour %2d: %6.1f MB resident, %6.2f MB allocated, %d threads, %d descriptors\n",
                    hour + 1, last.memory, last.allocated, last.threads, last.descriptors);
        std::fflush(stdout);
    }
    Clock::fix({});
    Figures::title("A day at the door");
    Figures::row("recognitions", recognised, "");
    Figures::row("menu tours", toured, "");
    Figures::row("enrolments", enrolled, "");
    Figures::row("requests", asked, "");
    Figures::row("answered", answered, "");
    Figures::row("of all these not as they should be", failed, "", "wanted: none");
    printGrowth("Growth behind the first hour", first, last);
    printGrowth("Growth behind the twelfth", noon, last);
    return failed == 0 && answered == asked;
}
