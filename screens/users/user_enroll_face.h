#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_enroll_face.h"

/// Step of an enrolment: the face.
class UserEnroll_Face : public FormScreen<Ui::UserEnroll_Face> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
