#pragma once

#include <QObject>
#include <QQueue>
#include <QTimer>
#include <QVariant>
#include <functional>

#include "cloud/command_carrier.h"
#include "cloud/download_manager.h"
#include "cloud/firmware_update.h"
#include "cloud/management_commands.h"
#include "link/device_records.h"

class CloudHost;
struct DeviceMessage;
class ManagementHost;
class RestClass;
class ServiceContact;

/// The terminal's side of the management service: the REST client with the thread that serves HTTP,
/// the timers that keep the contact, the command folders, the downloads and the reports of what
/// happens at the door. GUI thread only.
class ManagementLink : public QObject {
    Q_OBJECT

 public:
    /// Both hosts outlive the object.
    ManagementLink(CloudHost& cloud, ManagementHost& host, QObject* parent);
    /// Joins the thread that serves HTTP, which may call the cloud host until then.
    ~ManagementLink() override;

    /// Takes up what an end of the process has interrupted, starts the thread and the look-out for
    /// command folders.
    void start();

    /// Lets the thread wind up; the destructor waits for it.
    void stop();

    /// Whether the management service has been reached.
    bool connected() const { return connected_; }
    void setConnected(bool connected);
    /// Whether the settings have it in use.
    bool inUse() const;
    /// Starts the contact anew, with the address and the periods of the settings in force.
    void restart();
    /// Tries to connect now, or checks the connection.
    void connectNow();
    void checkNow();

    /// Takes one pending command folder, if there is one and the device link is ready for it.
    void takeCommandFolder();
    /// What was sent over the device link has left.
    void linkDrained();
    /// Looks at what the device controller says for answers to what the service has ordered.
    void controllerMessage(const DeviceMessage& message);

    /// Reports to the service, when it is in use. What it does not confirm stays with the device
    /// controller, which offers it again.
    void reportAccess(const GUI_LOGDATA& event);
    /// One after the other, since the service may have asked for several.
    void reportEnrolment(const info_s& info);
    void reportVisitor(const QVariant& visitor);
    /// The same without the controller behind it: each is told of once, and what the service does
    /// not hear it is not told again.
    void reportGroupDeleted(int group);
    /// One of the client's calls has come to its end.
    void completed(const QVariant& procIdx);

    const ServiceContact& contact() const;
    RestClass* client() const { return client_; }
    DownloadManager& downloads() { return downloads_; }
    ManagementCommands& commands() { return commands_; }
    FirmwareUpdate& firmware() { return firmware_; }

 signals:
    void connectedChanged(bool connected);
    /// The service, which has not taken a report, is there: the controller may offer it again.
    void unreportedWanted();

 private:
    void tellOfGroup();
    void tellOfUser();

    CloudHost& cloud_;
    ManagementCommands commands_;
    CommandCarrier carrier_;
    DownloadManager downloads_;
    FirmwareUpdate firmware_;
    RestClass* client_;
    QTimer connectTimer_;
    QTimer checkTimer_;
    bool connected_ = false;
    QQueue<int> groups_;  // to be told of, one call at a time
    QQueue<info_s> users_;
    bool unreported_ = false;  // a report was not taken
};
