#pragma once

#include <QDateTime>
#include <QObject>
#include <QVariant>

struct DeviceMessage;

/// What has passed between the terminal and its two peers, for whoever shows it: since when the
/// link to the device controller is as it is, what the management service has confirmed today, and
/// what it has not yet. GUI thread only.
class PeerHistory : public QObject {
    Q_OBJECT

 public:
    explicit PeerHistory(QObject* parent) : QObject(parent) {}

    /// When the link has come up or gone down; invalid when it has never been there.
    const QDateTime& linkChanged() const { return linkChanged_; }
    /// Reports of events and of users that the service has confirmed since midnight.
    int confirmedToday() const;
    /// Whether the controller is known to hold events, or users, that the service has not
    /// confirmed.
    bool eventsWait() const { return eventsWait_; }
    bool usersWait() const { return usersWait_; }

    void setLinkUp(bool up);
    /// Looks at what the controller says for data that wait.
    void controllerMessage(const DeviceMessage& message);
    /// A request to the service has ended; a ProcIDX.
    void completed(const QVariant& procIdx);

 signals:
    void changed();

 private:
    QDateTime linkChanged_;
    QDate day_;  // of the confirmations that are counted
    int confirmed_ = 0;
    bool eventsWait_ = false;
    bool usersWait_ = false;
};
