#include "app/navigation.h"

#include <utility>

#include "app/screen_titles.h"
#include "app/window_form.h"

Navigation::Navigation(std::function<std::optional<_gui_menu_>()> settings, QObject* parent)
    : QObject(parent),
      session_(settings),
      menuTimer_([settings] { return settings().value_or(_gui_menu_{}); }, this) {
    connect(&windows_, &WindowRegistry::changing, this,
            [this](const QString& title) { session_.screenChanging(title); });
    connect(&menuTimer_, &MenuTimer::timedOut, this, &Navigation::leaveUnattended);
}

bool Navigation::isActive(const QString& title) const {
    return active() != nullptr && active()->getTitle() == title;
}

int Navigation::change(const QString& title, const QVariant* param) {
    // A title that there is not and a change that would be refused anyway ask for nothing.
    if (windows_.isChangeAllowed() && windows_.find(title) != nullptr && !session_.admits(title)) {
        askPassword({title, param != nullptr ? *param : QVariant()});
        return WindowRegistry::kRefused;
    }
    return windows_.change(title, param);
}

void Navigation::askPassword(const PasswordPurpose& purpose) {
    const QVariant param = QVariant::fromValue(purpose);
    // Whoever is typing it already is asked once.
    if (isActive(screen_title::kPassword))
        active()->setParam(param);
    else
        windows_.change(screen_title::kPassword, &param);
}

void Navigation::asAdministrator(const std::function<void()>& request) {
    if (session_.isOpen())
        request();
    else
        askPassword({{}, {}, request});
}

void Navigation::passwordEntered(const PasswordPurpose& purpose) {
    session_.open();
    if (purpose.request) {
        purpose.request();
        // It may have brought up a screen of its own.
        if (isActive(screen_title::kPassword))
            change(screen_title::kStandby);
        return;
    }
    change(purpose.title.isEmpty() ? screen_title::kMenu : purpose.title,
           purpose.param.isValid() ? &purpose.param : nullptr);
}

int Navigation::enrolAtDoor(int enrolMode) {
    if (!windows_.isChangeAllowed())
        return WindowRegistry::kRefused;
    session_.beginEnrolment();
    const QVariant param = enrolMode;
    if (!isActive(screen_title::kEnrolQualification))
        return change(screen_title::kEnrolQualification, &param);
    // An order of the service takes the place of the enrolment that was there.
    active()->setParam(param);
    return WindowRegistry::kDone;
}

QString Navigation::enrolmentReturnTitle() const {
    return session_.enrolsAtDoor() ? screen_title::kStandby : screen_title::kUserMenu;
}

void Navigation::startTime(const QString& title) {
    menuTimer_.start();
    if (title.startsWith(QLatin1String("factory")) || title.startsWith(QLatin1String("f_")))
        factoryActive_ = true;
    const WindowForm* next = windows_.find(title);
    if (factoryActive_ || (next != nullptr && !next->timesOut()))
        menuTimer_.stop();
}

void Navigation::leaveUnattended(const QString& returnTitle) {
    // An operation that must not be left is waited for, and so is an answer.
    if (!windows_.isChangeAllowed() || (active() != nullptr && active()->isWaiting())) {
        menuTimer_.reset();
        return;
    }
    emit timedOut();
    change(returnTitle);
}
