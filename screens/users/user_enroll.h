#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll.h"

/// First step of an enrolment: the way of authentication, and with it the further steps. The way
/// that the terminal itself is set to is chosen at first.
class UserEnroll : public FormScreen<Ui::UserEnroll, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;

    void enrollCardOnly();
    void enrollFaceOnly();
    void enrollFaceOrCard();
    void enrollFaceAndCard();
    void enrollFaceAndID();

 protected:
    void built() override;
    void nextButtonTouch() override;

 private:
    void choose(int mode);
};
