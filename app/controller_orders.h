#pragma once

class DeviceLink;

/// What the shell itself has the device controller do, and screens ask the shell for. Nothing is
/// sent without a link. GUI thread only.
class ControllerOrders {
 public:
    /// @p link outlives the object.
    explicit ControllerOrders(DeviceLink& link) : link_(link) {}

    void tellClosed(int value);
    void playSound(int id);
    /// At most 128 bytes of @p text are sent; none where it is null.
    void speak(int n, const char* text);
    void askForUnsentData();

 private:
    DeviceLink& link_;
};
