#include <QElapsedTimer>
#include <QHostAddress>
#include <QSocketNotifier>
#include <QTcpSocket>
#include <QtTest>
#include <functional>
#include <iterator>
#include <map>
#include <vector>

#include "app/main_window.h"
#include "app/screen_titles.h"
#include "app/window_form.h"
#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/painting.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "ui/dialog_overlay.h"
#include "ui/input_field.h"
#include "ui/touch_shield.h"
#include "ui/widget_button.h"

namespace {

constexpr int kWarm = 10;
constexpr int kEnrolments = 100;
constexpr int kRoom = 1000;  // measurements of a screen
constexpr int kPresent = 7;  // users, before each
constexpr int kRest = 20;    // milliseconds without anything to do before each touch

/// What an enrolment begins with, and captures.
constexpr struct Mode {
    const char* way;  ///< row of the first step; null: at the live view
    bool card;
    bool face;
} kModes[] = {{"authCardOnlyRow", true, false},  {"authFaceOnlyRow", false, true},
              {"authFaceOrCardRow", true, true}, {"authFaceAndCardRow", true, true},
              {"authFaceAndIDRow", false, true}, {nullptr, true, true}};

struct Times {
    std::vector<double> changes;  // milliseconds
    std::vector<double> paints;
    std::vector<double> answers;  // of the controller, where the screen waits for one
};

/// Tells when something arrives at a socket.
class ArrivalWatch : public QObject {
 public:
    explicit ArrivalWatch(qintptr socket) : socket_(socket) {
        qApp->installEventFilter(this);
        timer_.start();
    }
    /// Milliseconds from when the watch was made until then; 0 when nothing has come.
    double arrived() const { return arrived_; }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* notifier = qobject_cast<QSocketNotifier*>(watched);
        if (event->type() == QEvent::SockAct && arrived_ == 0 && notifier->socket() == socket_ &&
            notifier->type() == QSocketNotifier::Read)
            arrived_ = static_cast<double>(timer_.nsecsElapsed()) / 1e6;
        return QObject::eventFilter(watched, event);
    }

 private:
    const qintptr socket_;
    QElapsedTimer timer_;
    double arrived_ = 0;
};

/// The terminal under a finger, and the controller that it talks to.
class Enrolment {
 public:
    Enrolment() { window_.show(); }

    /// Waits for the controller, which takes words at the port @p control.
    bool start(quint16 control) {
        const auto connects = [&] {
            words_.connectToHost(QHostAddress(QHostAddress::LocalHost), control);
            return words_.waitForConnected();
        };
        return wait(connects) && wait([this] { return window_.settingsArrived(); });
    }
    /// Has the controller carry words out; false when it knows better.
    bool tell(const QString& words) { return ask(words).startsWith("ok"); }
    /// One of them from its beginning to its end; false when it does not come to that.
    bool play(const Mode& mode, int number) {
        window_.changeWindow(screen_title::kStandby);
        window_.changeWindow(mode.way != nullptr ? screen_title::kUserMenu : screen_title::kLive);
        QCoreApplication::processEvents();
        const bool begun =
            mode.way == nullptr
                ? go("enrollButton", screen_title::kEnrolQualification)
                : go("userEnrollTile", screen_title::kEnrolMenu) && touch(mode.way) &&
                      go("forwardButton", screen_title::kEnrolQualification) &&
                      go("forwardButton", screen_title::kEnrolId) &&
                      wait([this] { return find<InputField>("numberEntry")->text().size() == 11; });
        const char* next = "forwardButton";
        bool done = begun;
        // Nothing comes up before the controller has said that the number is free.
        const bool asks = mode.way != nullptr;
        if (done && mode.card) {
            done = go(next, screen_title::kEnrolCard, asks) && captures("card") &&
                   tell(QStringLiteral("card %1").arg(50000000 + number)) &&
                   wait([this] { return find("forwardButton")->isEnabled(); }) &&
                   touch("forwardButton");
            next = "dialogOkButton";
        }
        if (done && mode.face)
            done = go(next, screen_title::kEnrolFace, asks && !mode.card) && captures("face") &&
                   tell(QStringLiteral("enrol-face good"));
        const bool ended =
            done && go("dialogOkButton",
                       mode.way != nullptr ? screen_title::kUserMenu : screen_title::kStandby);
        return ended && tell(QStringLiteral("users %1").arg(kPresent));
    }
    /// By the screen that comes up.
    const std::map<QString, Times>& times() const { return times_; }

 private:
    static bool wait(const std::function<bool()>& done) { return QTest::qWaitFor(done, 30000); }
    template <class Widget = QWidget>
    Widget* find(const char* name) const {
        for (Widget* widget : window_.findChildren<Widget*>(QLatin1String(name))) {
            if (widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    QByteArray ask(const QString& words) {
        words_.write(words.toUtf8() + '\n');
        QByteArray answer;
        const bool answered = wait([&] {
            answer += words_.readAll();
            return answer.endsWith('\n');
        });
        return answered ? answer : QByteArray();
    }
    bool captures(const char* what) {
        return wait([&] { return ask(QStringLiteral("enrolment")).contains(what); });
    }
    /// Puts the finger on the widget @p name as soon as it is there.
    bool press(const char* name) {
        if (!wait([&] { return find(name) != nullptr; }))
            return false;
        QWidget* const widget = find(name);
        at_ = widget->mapTo(&window_, widget->rect().center());
        QTest::mousePress(window_.windowHandle(), Qt::LeftButton, {}, at_);
        QCoreApplication::processEvents();
        return true;
    }
    void lift() { QTest::mouseRelease(window_.windowHandle(), Qt::LeftButton, {}, at_); }
    bool touch(const char* name) {
        const bool pressed = press(name);
        if (pressed)
            lift();
        return pressed;
    }
    /// Touches it, and measures until the screen @p title has been painted. Where the controller is
    /// @p asked first whether the screen may come up, the change begins with its answer; how long
    /// that takes, most of it in another process, is a figure of its own.
    bool go(const char* name, const QString& title, bool asked = false) {
        QTest::qWait(kRest);
        if (!press(name))
            return false;
        WindowForm* const screen = window_.getWindow(title);
        const ArrivalWatch answer(asked ? window_.findChild<QTcpSocket*>()->socketDescriptor()
                                        : -1);
        const PaintWatch watch(screen);
        lift();
        const double painted = watch.wait();
        Times& times = times_[title];
        // The growth that is measured is not to be that of the measurements.
        times.changes.reserve(kRoom);
        times.paints.reserve(kRoom);
        times.answers.reserve(kRoom);
        times.changes.push_back(painted - answer.arrived());
        if (asked)
            times.answers.push_back(answer.arrived());
        times.paints.push_back(paintAlone());
        return window_.getActivateWindowForm() == screen;
    }
    /// Milliseconds that painting the window takes by itself, with the keypad where that came up.
    /// A processor that has rested is slower at first, whatever it does; and before every touch
    /// the terminal has waited for somebody. So it waits as long here, and shows a button's
    /// finger, before it paints.
    double paintAlone() {
        QTest::qWait(kRest);
        for (WidgetButton* button : window_.findChildren<WidgetButton*>()) {
            if (button->isVisible()) {
                button->update();
                break;
            }
        }
        QCoreApplication::processEvents();
        return repaint(&window_);
    }

    MainWindow window_;
    QTcpSocket words_;
    QPoint at_;
    std::map<QString, Times> times_;
};

}  // namespace

bool measureEnrolments() {
    // A process of its own, or what it keeps of users would be taken for the terminal's.
    const quint16 control = freePort();
    Program controller("zel-controller-sim",
                       {QStringLiteral("--control"), QString::number(control)});
    QFile(DevicePaths::at(QStringLiteral("/mnt/data/rebootchkr"))).open(QIODevice::WriteOnly);
    TouchShield::setTime(0);
    Enrolment enrolment;
    if (!enrolment.start(control))
        return false;
    for (const char* words :
         {"settings screen.menuTimeout 3", "settings registration.on 1",
          "settings registration.authMethod 2", "settings registration.autoId 1", "enrol-pace 0"}) {
        if (!enrolment.tell(QLatin1String(words)))
            return false;
    }

    double before = 0;
    for (int number = 0; number < kEnrolments; ++number) {
        if (number == kWarm)
            before = allocatedMemory();
        const Mode& mode = kModes[number % std::size(kModes)];
        if (!enrolment.play(mode, number))
            qFatal("the enrolment by %s ends half way",
                   mode.way != nullptr ? mode.way : "the live view");
    }
    Figures::title("100 enrolments, by all ways: from the touch until the screen is painted");
    for (const auto& [title, times] : enrolment.times()) {
        const double change = Figures::median(times.changes);
        const double paint = Figures::median(times.paints);
        const auto row = [name = title](const char* what, double value, const char* unit,
                                        const char* wanted = "") {
            Figures::row(qUtf8Printable(name + QLatin1String(what)), value, unit, wanted);
        };
        row("", change, "ms");
        row(", painting alone", paint, "ms");
        if (!times.answers.empty())
            row(", until the controller's answer", Figures::median(times.answers), "ms");
        row(", ratio", change / paint, "", "wanted: at most 2");
    }
    Figures::row("growth of what is allocated, 10th to 100th", allocatedMemory() - before, "bytes",
                 "wanted: none");
    return true;
}
