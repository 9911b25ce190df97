#pragma once

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_input_sub.h"

/// Entry of a customer number at the door, by somebody whose face is then compared with that
/// number's alone.
class InputSub : public FormScreen<Ui::InputSub> {
    Q_OBJECT

 public:
    InputSub(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void nextButtonTouch();
    /// What the controller says of the number; the values are those of command::number_check.
    void getResult(int result);

 protected:
    void built() override;

 private:
    void say(int number);

    ScreenPopup popup_;
    DeviceRequest request_;
};
