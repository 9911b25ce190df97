#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_qualification.h"

/// Step of an enrolment: level, rights and glasses, as far as the mode leaves them to be chosen.
/// An enrolment begins here with its mode as the parameter, also while the screen is up. Refuses to
/// go on when the controller holds as many users as it can.
class UserEnroll_Qualification : public FormScreen<Ui::UserEnroll_Qualification, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void setParam(QVariant param) override;
    void windowInEvent() override;
    void settingsChanged(const SettingsChange& change) override;

    /// Begins an enrolment of @p mode with the user record as it is.
    void setEnrollMode(int mode);

 protected:
    void built() override;
    void nextButtonTouch() override;

 private:
    void showUser();
    void showCount();
    void say(const QString& key);
};
