#include "app/management_link.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "cloud/cloud_host.h"
#include "cloud/decoded.h"
#include "cloud/event_reports.h"
#include "cloud/parameters.h"
#include "cloud/rest_client.h"
#include "link/command_code.h"
#include "link/device_message.h"

namespace {

constexpr int kInUse = 1;
/// Seconds where the settings give no period.
constexpr int kConnectPeriod = 30;
constexpr int kCheckPeriod = 60;
/// As many as the controller may have.
constexpr int kMostUsers = 10000;

int milliseconds(int seconds, int standard) {
    return (seconds > 0 ? seconds : standard) * 1000;
}

}  // namespace

ManagementLink::ManagementLink(CloudHost& cloud, ManagementHost& host, QObject* parent)
    : QObject(parent),
      cloud_(cloud),
      commands_(cloud, host),
      carrier_(commands_, host),
      firmware_(downloads_, host),
      client_(new RestClass(cloud, this)) {
    connect(&connectTimer_, &QTimer::timeout, this, [this] {
        if (!connected_)
            connectNow();
    });
    connect(&checkTimer_, &QTimer::timeout, this, [this] {
        if (connected_)
            checkNow();
    });
}

ManagementLink::~ManagementLink() {
    delete client_;
}

void ManagementLink::start() {
    // Before the thread takes new orders in, which come after the old ones.
    firmware_.resume();
    client_->start(QThread::InheritPriority);
    carrier_.start();
}

void ManagementLink::stop() {
    client_->stop();
}

bool ManagementLink::inUse() const {
    return cloud_.settings().network.useManager == kInUse;
}

void ManagementLink::setConnected(bool connected) {
    if (connected == connected_)
        return;
    connected_ = connected;
    if (!connected && client_->contact().state() == ServiceContact::State::Reached)
        client_->contact().interrupted();
    emit connectedChanged(connected);
}

void ManagementLink::restart() {
    connectTimer_.stop();
    checkTimer_.stop();
    setConnected(false);
    client_->contact().interrupted();
    client_->takeSettings();
    if (!inUse())
        return;
    const NetworkBlock network = cloud_.settings().network;
    connectTimer_.start(milliseconds(network.connectPeriod, kConnectPeriod));
    checkTimer_.start(milliseconds(network.checkPeriod, kCheckPeriod));
}

const ServiceContact& ManagementLink::contact() const {
    return client_->contact();
}

void ManagementLink::connectNow() {
    client_->SendCommand(RestClass::kConnect, QVariant());
}

void ManagementLink::checkNow() {
    client_->SendCommand(RestClass::kConnectionCheck, QVariant());
}

void ManagementLink::takeCommandFolder() {
    carrier_.look();
}

void ManagementLink::linkDrained() {
    carrier_.linkDrained();
}

void ManagementLink::controllerMessage(const DeviceMessage& message) {
    if (message.command == command::FirmwareUpdateAnswer) {
        firmware_.answered();
    } else if (message.command == command::SettingsChanged) {  // which count the users
        carrier_.answered();
        commands_.settingsCame();
    } else if (message.command == command::NetworkSaved) {  // the last block of the settings
        commands_.settingsStored();
    }
}

void ManagementLink::reportAccess(const GUI_LOGDATA& event) {
    if (inUse() && client_->SendCommand(RestClass::kUserInOutLog,
                                        QVariant::fromValue(event_reports::accessEvent(event))) !=
                       RestClass::kAccepted)
        unreported_ = true;
}

void ManagementLink::reportEnrolment(const info_s& info) {
    const auto same = std::find_if(users_.begin(), users_.end(), [&info](const info_s& each) {
        return std::memcmp(each.user.userId, info.user.userId, sizeof info.user.userId) == 0;
    });
    if (same != users_.end())
        *same = info;
    else if (inUse() && users_.size() < kMostUsers)
        users_.enqueue(info);
    tellOfUser();
}

void ManagementLink::tellOfUser() {
    if (!inUse())
        users_.clear();
    else if (!users_.isEmpty() &&
             client_->SendCommand(RestClass::kUserEnroll,
                                  QVariant::fromValue(event_reports::enrolledUser(
                                      users_.head()))) == RestClass::kAccepted)
        users_.dequeue();
}

void ManagementLink::reportVisitor(const QVariant& visitor) {
    if (inUse())
        client_->runFR51(visitor);
}

void ManagementLink::reportGroupDeleted(int group) {
    if (inUse())
        groups_.enqueue(group);
    tellOfGroup();
}

void ManagementLink::completed(const QVariant& procIdx) {
    commands_.completed(procIdx);
    const auto request = procIdx.value<ProcIDX>();
    const bool declined = request.resultCode != result::kSucceed;
    switch (request.command) {
        case RestClass::kUserDeleted:
            tellOfGroup();
            break;
        case RestClass::kUserEnroll:
            unreported_ = unreported_ || declined;
            // The others would not be heard either.
            if (!connected_)
                users_.clear();
            tellOfUser();
            break;
        case RestClass::kUserInOutLog:
            unreported_ = unreported_ || declined;
            break;
        case RestClass::kConnectionCheck:
            // Once in a period, however often it is declined.
            if (connected_ && std::exchange(unreported_, false))
                emit unreportedWanted();
            break;
        default:
            break;
    }
}

void ManagementLink::tellOfGroup() {
    if (!inUse())
        groups_.clear();
    else if (!groups_.isEmpty() &&
             client_->SendCommand(
                 RestClass::kUserDeleted,
                 QVariant::fromValue(FR36_Parameter{QString::number(groups_.head()), QString()})) ==
                 RestClass::kAccepted)
        groups_.dequeue();
}
