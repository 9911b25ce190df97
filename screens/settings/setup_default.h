#pragma once

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_setup_default.h"

/// Resets logs, settings or everything, and restarts the terminal.
class SetupDefault : public FormScreen<Ui::SetupDefault> {
    Q_OBJECT

 public:
    SetupDefault(QWidget* parent, const QString& title);

    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;

    /// Shows how the reset of @p what (command::initialise) has gone; 0: done.
    void ShowResetResult(unsigned char result, unsigned char what);

 protected:
    void built() override;
    void homeButtonTouch() override;

 private:
    void ask(unsigned char what);
    void reset(unsigned char what);
    void restart();

    DeviceRequest reset_;
    DeviceRequest restart_;
    unsigned char what_ = 0;  // is reset, as it was asked for last
    ScreenPopup popup_;
};
