#pragma once

#include <QObject>

#include "link/device_message.h"

class WindowRegistry;

/// Hands every frame of the device controller to the part that it concerns, by the routing table
/// alone. What concerns the shell itself goes out as shellMessage(). GUI thread only; a handler
/// runs to completion before the next frame is looked at.
class MessageDispatch : public QObject {
    Q_OBJECT

 public:
    MessageDispatch(const WindowRegistry& windows, QObject* parent);

    /// Dispatches one frame. An unknown code, an answer for a screen that has been left and a
    /// payload shorter than its record are dropped, the last with a line in the log.
    void dispatch(const DeviceMessage& message);

 signals:
    /// A whole frame has come, before its part is told.
    void arrived(const DeviceMessage& message);
    void shellMessage(const DeviceMessage& message);

 private:
    const WindowRegistry& windows_;
};
