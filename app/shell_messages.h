#pragma once

#include <QObject>
#include <QVariant>

#include "app/controller_orders.h"
#include "link/device_message.h"
#include "link/device_records.h"

class DeviceLink;
class RecordStore;
class SettingsEntrance;
class SystemStatus;

/// What the shell does with the controller's frames that concern no screen. What takes more than
/// the records and an answer goes out as a signal. GUI thread only.
class ShellMessages : public QObject {
    Q_OBJECT

 public:
    /// All outlive the object.
    ShellMessages(DeviceLink& link, RecordStore& records, SettingsEntrance& settings,
                  SystemStatus& status, QObject* parent);

    void take(const DeviceMessage& message);
    /// Keeps of a frame that some screen has asked for what all are to know.
    void overhear(const DeviceMessage& message);
    /// The event that the controller has reported last, without a payload.
    const DeviceMessage& lastControllerEvent() const { return lastControllerEvent_; }

 signals:
    /// The process is to end; that has been acknowledged.
    void quitOrdered();
    void statusReported(int status);
    /// To be told to the management service.
    void accessReported(const GUI_LOGDATA& event);
    /// Just now, for somebody at the door.
    void accessRecorded(bool accepted);
    void userEnrolled(const info_s& info);
    /// Holds an FR51_Parameter.
    void visitorCalled(const QVariant& visitor);
    /// There may be something to say of @p command.
    void popupWanted(int command, int p1);

 private:
    DeviceLink& link_;
    RecordStore& records_;
    SettingsEntrance& settings_;
    SystemStatus& status_;
    ControllerOrders orders_;
    DeviceMessage lastControllerEvent_;
};
