#pragma once

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_user_enroll_face.h"

/// Step of an enrolment: the face. Shows the camera's picture in a ring that fills while the
/// controller captures, and what the person is to do; then has the user stored. A capture that
/// makes no progress for 20 seconds has failed.
class UserEnroll_Face : public FormScreen<Ui::UserEnroll_Face, EnrolStep> {
    Q_OBJECT

 public:
    UserEnroll_Face(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;

    /// Has the controller capture the face of the user record.
    void enrollStart();
    /// How far the capture is. Each quarter is told the controller once.
    void setPercent(int percent);
    /// What the person is to do, by number; an unknown one leaves that as it is.
    void setEnrollState(int state);
    /// What comes of the capture, or how it goes on: @p result is one of command::capture.
    void enrollResult(int result, int value, const QString& text);
    /// Nothing has come of it in time.
    void enrollFail();
    /// Shows popup @p code and ends the enrolment after it.
    void ShowPopup(int code);

 protected:
    void built() override;
    void abandon() override;
    void paintEvent(QPaintEvent* event) override;

 private:
    void answered(const DeviceMessage& message);
    void stored(int result);

    DeviceRequest request_{this};
    int stage_ = 0;  // quarters that have been told
    bool capturing_ = false;
};
