#pragma once

#include <QStringList>

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_id.h"

/// Step of an enrolment: the customer number, which the controller checks and keeps for the user.
/// One that it has offered itself is filled in and can be changed.
class UserEnroll_ID : public FormScreen<Ui::UserEnroll_ID, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void autoId(const QString& id) override;

    /// What the controller has found wrong with the number: 1 in use, 2 of another length.
    void RegCertiNumError(int result);
    /// Shows popup @p code; the keypad comes back after it.
    void ShowPopup(int code);

 protected:
    void built() override;
    void nextButtonTouch() override;
    void abandon() override;

 private:
    void answered(const DeviceMessage& message);
    void showKeypad();

    DeviceRequest request_{this};
    QString checked_;  // what the controller has been asked about, whatever is typed meanwhile
    QStringList unanswered_;  // numbers that it has been asked about since the screen came up
};
