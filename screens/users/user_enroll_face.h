#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_face.h"

/// Step of an enrolment: the face.
class UserEnroll_Face : public FormScreen<Ui::UserEnroll_Face, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
