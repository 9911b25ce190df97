#pragma once

#include <QVariant>
#include <deque>

#include "cloud/cloud_host.h"
#include "cloud/command_queue.h"
#include "cloud/management_host.h"
#include "cloud/parameters.h"

/// Carries out what the management service has ordered, and tells the device controller what the
/// service has confirmed. A QVariant that does not hold the expected record is ignored. GUI thread
/// only.
class ManagementCommands {
 public:
    /// Both hosts outlive the object; usually they are one.
    ManagementCommands(CloudHost& cloud, ManagementHost& host) : cloud_(cloud), host_(host) {}

    void openDoor();
    /// FR33_3_Parameter: the controller is asked for the user's data.
    void getUser(const QVariant& parameter);
    /// FR33_3_Parameter.
    void deleteUser(const QVariant& parameter);
    /// DoReceiveUserData: the user is stored.
    void enrolUser(const QVariant& parameter);
    /// DoReceiveUserData: the user is enrolled at the terminal.
    void runKioskEnrolMode(const QVariant& parameter);
    /// FR01_Parameter; anything but a date and a time of this century is ignored.
    void setTime(const QVariant& parameter);
    /// Device_Setup_Parameter.
    void setDevice(const QVariant& parameter);
    /// The controller's record has come, or it has stored the settings of the oldest setDevice()
    /// that it has not answered yet.
    void settingsCame() { crossed_ = !ordered_.empty(); }
    void settingsStored();
    /// SystemEvent_Parameter.
    void setSystem(const QVariant& parameter);

    /// Carries a command folder out; false when it could not be sent.
    bool addUserRestCommandDir(const CommandQueue::Taken& taken);

    /// ProcIDX of a request that the REST client has finished.
    void completed(const QVariant& procIdx);

 private:
    template <typename Record>
    void send(unsigned short cmd, unsigned char p1, const Record& record);

    struct Ordered {
        Device_Setup_Parameter setup;
        quint32 connection;  // over which it was sent
    };

    CloudHost& cloud_;
    ManagementHost& host_;
    bool sent_ = false;            // the latest frame with a record
    std::deque<Ordered> ordered_;  // settings that the controller has not answered yet
    bool crossed_ = false;         // its record has come meanwhile
};
