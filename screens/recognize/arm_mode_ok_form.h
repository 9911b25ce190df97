#pragma once

#include "screens/recognize/ok_form.h"

/// What a recognition has done to the alarm.
enum class ArmState { None = 0, Disarmed = 2, Armed = 3 };

/// Confirms that the alarm has been armed or disarmed.
class ArmModeOkForm : public OkForm {
    Q_OBJECT

 public:
    using OkForm::OkForm;

    void setState(ArmState state);
};
