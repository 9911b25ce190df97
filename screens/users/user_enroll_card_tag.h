#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_card_tag.h"

/// Step of an enrolment: the card.
class UserEnroll_CardTag : public FormScreen<Ui::UserEnroll_CardTag, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
