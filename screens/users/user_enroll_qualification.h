#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_qualification.h"

/// Step of an enrolment: level, rights and glasses.
class UserEnroll_Qualification : public FormScreen<Ui::UserEnroll_Qualification, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
