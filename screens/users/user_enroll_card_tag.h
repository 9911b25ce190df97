#pragma once

#include <QDeadlineTimer>

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui/visible_timer.h"
#include "ui_user_enroll_card_tag.h"

/// Step of an enrolment: the card. Waits for one to be held to the reader, has it registered and
/// the user stored, and shows its number for a moment before it goes on or asks whether to.
class UserEnroll_CardTag : public FormScreen<Ui::UserEnroll_CardTag, EnrolStep> {
    Q_OBJECT

 public:
    UserEnroll_CardTag(QWidget* parent, const QString& title);

    void windowInEvent() override;

    /// A card of the type @p type has been read; @p result 0, else it could not be.
    void SetCardResult(int result, int type, const QString& cardNumber);
    /// The card belongs to somebody else.
    void RegCardError(int result);
    /// The card is the user's: has them stored.
    void cardTagOK();
    /// The card is stored: asks whether the face is to be added.
    void RegProcessRestartAsk();
    /// What happens after a popup.
    enum PopupType {
        WaitAgain,  ///< for another card
        End,
    };
    /// Shows popup @p code; @p type is a PopupType.
    void ShowPopup(int code, int type);

 protected:
    void built() override;
    void nextButtonTouch() override;
    void abandon() override;

 private:
    enum class State { Idle, Waiting, Storing, Stored };

    void wait();
    void answered(const DeviceMessage& message);
    void failed(DeviceRequest::Failure why);
    void refused(int result);
    void stored(const DeviceMessage& message);
    void proceed();
    void showSeconds();
    void showRead(bool read);

    DeviceRequest request_{this};
    VisibleTimer secondsTimer_{this};
    VisibleTimer numberTimer_{this};  // for as long as the number is shown at least
    QDeadlineTimer until_;
    State state_ = State::Idle;
};
