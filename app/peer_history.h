#pragma once

#include <QDateTime>
#include <QObject>
#include <QVariant>
#include <optional>

#include "link/device_records.h"

class CableWatch;
struct DeviceMessage;

/// What has passed between the terminal and its peers, for whoever shows it: since when the link to
/// the device controller is as it is, and the controller's own to the access controller; what the
/// management service has confirmed today, and what it has not yet. GUI thread only.
class PeerHistory : public QObject {
    Q_OBJECT

 public:
    explicit PeerHistory(QObject* parent);

    /// When the link has come up or gone down; invalid when it has never been there.
    const QDateTime& linkChanged() const { return linkChanged_; }
    /// How the controller has said that it stands with the access controller, and when it was
    /// first heard to be so; nothing when the link has come or gone since.
    const std::optional<HostInfo>& host() const { return host_; }
    const QDateTime& hostSince() const { return hostSince_; }
    CableWatch& cable() const { return *cable_; }
    /// Reports of events and of users that the service has confirmed since midnight.
    int confirmedToday() const;
    /// Whether the controller is known to hold events, or users, that the service has not
    /// confirmed.
    bool eventsWait() const { return eventsWait_; }
    bool usersWait() const { return usersWait_; }

    void setLinkUp(bool up);
    /// Looks at what the controller says for what is kept here.
    void controllerMessage(const DeviceMessage& message);
    /// A request to the service has ended; a ProcIDX.
    void completed(const QVariant& procIdx);

 signals:
    void changed();

 private:
    void setHost(const HostInfo& host);

    CableWatch* const cable_;
    QDateTime linkChanged_;
    std::optional<HostInfo> host_;
    QDateTime hostSince_;
    QDate day_;  // of the confirmations that are counted
    int confirmed_ = 0;
    bool eventsWait_ = false;
    bool usersWait_ = false;
};
