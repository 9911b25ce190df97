#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_re_card_tag.h"

/// The card step, entered again for a user who is there already.
class UserEnroll_ReCardTag : public FormScreen<Ui::UserEnroll_ReCardTag, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
