#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll.h"

/// First step of an enrolment: the way of authentication.
class UserEnroll : public FormScreen<Ui::UserEnroll, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
