#include "app/peer_history.h"

#include "app/cable_watch.h"
#include "base/clock.h"
#include "cloud/parameters.h"
#include "cloud/rest_client.h"
#include "link/command_code.h"
#include "link/device_message.h"

namespace {

/// By which the service says that it has what was reported.
constexpr int kConfirmed = 1000;

}  // namespace

PeerHistory::PeerHistory(QObject* parent) : QObject(parent), cable_(new CableWatch(this)) {
    connect(cable_, &CableWatch::changed, this, &PeerHistory::changed);
}

int PeerHistory::confirmedToday() const {
    return day_ == Clock::now().date() ? confirmed_ : 0;
}

void PeerHistory::setLinkUp(bool up) {
    if (!up && !linkChanged_.isValid())
        return;
    linkChanged_ = Clock::now();
    // Nobody has told meanwhile.
    host_.reset();
    emit changed();
}

void PeerHistory::controllerMessage(const DeviceMessage& message) {
    switch (message.command) {
        case command::AccessEvent:
            eventsWait_ = true;
            break;
        case command::UserEnrolled:
            usersWait_ = true;
            break;
        case command::UnsentDataWaiting:
        case command::UnsentDataReady:
            eventsWait_ = usersWait_ = true;
            break;
        case command::ConnectionInfo:
            if (const auto host = message.record<HostInfo>())
                setHost(*host);
            break;
        default:
            return;
    }
    emit changed();
}

void PeerHistory::setHost(const HostInfo& host) {
    if (!host_ || host_->connected != host.connected)
        hostSince_ = Clock::now();
    host_ = host;
}

void PeerHistory::completed(const QVariant& procIdx) {
    const auto request = procIdx.value<ProcIDX>();
    const bool event = request.command == RestClass::kUserInOutLog;
    const bool user = request.command == RestClass::kUserEnroll;
    if ((!event && !user) || request.resultCode != kConfirmed)
        return;
    // The next one that waits follows at once, and says so.
    (event ? eventsWait_ : usersWait_) = false;
    confirmed_ = confirmedToday() + 1;
    day_ = Clock::now().date();
    emit changed();
}
