#include "app/administrator_session.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/screen_titles.h"
#include "link/device_message.h"

namespace {

using namespace screen_title;

constexpr QLatin1String kPublic[] = {
    kBoot, kStandby, kLive, kResult, kNumberEntry, kDestination, kPassword, kUpgrading,
};

/// Whoever sees one of these is at the door, not at the terminal's settings.
constexpr QLatin1String kEndOfSession[] = {kStandby, kLive, kResult};

constexpr QLatin1String kEnrolmentSteps[] = {
    kEnrolQualification, kEnrolId, kEnrolCard, kEnrolCardAgain, kEnrolFace,
};

template <std::size_t count>
bool contains(const QLatin1String (&titles)[count], const QString& title) {
    return std::any_of(std::begin(titles), std::end(titles),
                       [&title](QLatin1String one) { return title == one; });
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
    // The destination is asked for in the course of an enrolment, but not only there.
    if (!isEnrolmentStep(title) && title != kDestination)
        enrolsAtDoor_ = false;
}
