#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_id.h"

/// Step of an enrolment: the customer number.
class UserEnroll_ID : public FormScreen<Ui::UserEnroll_ID, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
