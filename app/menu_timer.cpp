#include "app/menu_timer.h"

#include <QCoreApplication>
#include <QEvent>
#include <iterator>
#include <utility>

#include "link/device_records.h"
#include "link/record_values.h"

MenuTimer::MenuTimer(std::function<_gui_menu_()> settings, QObject* parent)
    : QObject(parent), settings_(std::move(settings)) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &MenuTimer::timeoutEvent);
}

int MenuTimer::timeout(int selector) {
    constexpr int kChoices = std::size(MenuTimeout::kSeconds);
    return selector >= 0 && selector < kChoices ? MenuTimeout::kSeconds[selector] : 0;
}

void MenuTimer::start() {
    start(timeout(settings_().screen.menuTimeout), screen_title::kStandby);
}

void MenuTimer::start(int seconds, const QString& returnTitle) {
    seconds_ = seconds;
    returnTitle_ = returnTitle;
    if (settings_().commissioned == 0) {
        timer_.stop();
        return;
    }
    active_ = seconds > 0;
    run(seconds);
}

void MenuTimer::reset() {
    timer_.stop();
    if (active_ && seconds_ != 0)
        start(seconds_, returnTitle_);
}

void MenuTimer::reset(int seconds) {
    timer_.stop();
    if (seconds > 0)
        start(seconds, returnTitle_);
}

void MenuTimer::stop() {
    timer_.stop();
    active_ = false;
}

void MenuTimer::run(int seconds) {
    if (seconds > 0)
        timer_.start(seconds * 1000);
    else
        timer_.stop();
}

void MenuTimer::timeoutEvent() {
    if (active_)
        emit timedOut(returnTitle_);
}

TouchWatcher::TouchWatcher(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool TouchWatcher::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::TouchBegin:
        case QEvent::TouchEnd:
            // Seen first on its way to the window, then again at each widget; once is enough.
            if (watched->isWidgetType())
                emit touched();
            break;
        default:
            break;
    }
    return false;
}
