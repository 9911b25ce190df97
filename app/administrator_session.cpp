#include "app/administrator_session.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "link/device_message.h"

namespace {

constexpr const char* kPublic[] = {
    "bootWindow",     "stayWindow",           "liveWindow",         "recognizeWindow",
    "inputSubWindow", "InputDestinationForm", "InputAdminPassword", "upgradingWindow",
};

/// Whoever sees one of these is at the door, not at the terminal's settings.
constexpr const char* kEndOfSession[] = {"stayWindow", "liveWindow", "recognizeWindow"};

constexpr const char* kEnrolmentSteps[] = {
    "userEnroll_qualWindow",      "userEnroll_IDWindow",   "userEnroll_cardTagWindow",
    "userEnroll_reCardTagWindow", "userEnroll_FaceWindow",
};

/// Asked for in the course of an enrolment, but not only there.
constexpr char kDestination[] = "InputDestinationForm";

template <std::size_t count>
bool contains(const char* const (&titles)[count], const QString& title) {
    return std::any_of(std::begin(titles), std::end(titles),
                       [&title](const char* one) { return title == QLatin1String(one); });
}

}  // namespace

AdministratorSession::AdministratorSession(std::function<std::optional<_gui_menu_>()> settings)
    : settings_(std::move(settings)) {}

bool AdministratorSession::isPublic(const QString& title) {
    return contains(kPublic, title);
}

bool AdministratorSession::isEnrolmentStep(const QString& title) {
    return contains(kEnrolmentSteps, title);
}

bool AdministratorSession::admits(const QString& title) {
    return isPublic(title) || (enrolsAtDoor_ && isEnrolmentStep(title)) || isOpen();
}

bool AdministratorSession::isOpen() {
    if (!open_) {
        const auto settings = settings_();
        open_ = settings &&
                (settings->commissioned == 0 || fieldText(settings->setup.adminPassword).isEmpty());
    }
    return open_;
}

void AdministratorSession::beginEnrolment() {
    open_ = false;
    enrolsAtDoor_ = true;
}

void AdministratorSession::screenChanging(const QString& title) {
    if (contains(kEndOfSession, title))
        open_ = false;
    if (!isEnrolmentStep(title) && title != QLatin1String(kDestination))
        enrolsAtDoor_ = false;
}
