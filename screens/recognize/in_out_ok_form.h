#pragma once

#include "screens/recognize/ok_form.h"
#include "screens/recognize/work_state.h"

/// Confirms the attendance event that has been recorded.
class InOutOkForm : public OkForm {
    Q_OBJECT

 public:
    using OkForm::OkForm;

    void setEvent(const WorkState::Attendance& event);
};
