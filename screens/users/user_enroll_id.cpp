#include "screens/users/user_enroll_id.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "screens/users/customer_number.h"

namespace {

enum Popup { NumberInUse = 17, NotEleven = 22 };

constexpr ScreenText kTexts[] = {
    {NumberInUse, "Dialog_CustomerNumberIsAlreadyRegistered", ScreenText::Error},
    {NotEleven, "Error_EnterEleven", ScreenText::Error},
};

}  // namespace

void UserEnroll_ID::built() {
    popup().add(kTexts);
    connect(ui_->numberEntry, &InputField::doneTouched, this, [this] { nextButtonTouch(); });
    connect(&request_, &DeviceRequest::answered, this, &UserEnroll_ID::answered);
    connect(&request_, &DeviceRequest::failed, this, [this] { ShowPopup(NoAnswer); });
}

void UserEnroll_ID::windowInEvent() {
    FormScreen::windowInEvent();
    unanswered_.clear();
    ui_->numberEntry->setText(flow().isRunning() ? fieldText(user().customerId) : QString());
    showKeypad();
}

void UserEnroll_ID::showKeypad() {
    shell()->showTouchKey(ui_->numberEntry);
    // What nearly all numbers begin with.
    shell()->setTouchKeyOpt(QStringLiteral("010"));
}

void UserEnroll_ID::autoId(const QString& id) {
    EnrolStep::autoId(id);
    if (flow().isRunning() && ui_->numberEntry->text().isEmpty())
        ui_->numberEntry->setText(fieldText(user().customerId));
}

void UserEnroll_ID::nextButtonTouch() {
    if (request_.isWaiting())
        return;
    checked_ = ui_->numberEntry->text();
    if (!CustomerNumber::isValid(checked_))
        ShowPopup(NotEleven);
    else if (!request_.send(command::CheckUserId, 0, 0, checked_.toLatin1(),
                            {command::UserIdChecked}, kAnswerTime))
        endWith(NoConnection);
    else
        unanswered_.append(checked_);
}

void UserEnroll_ID::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::UserIdChecked) {
        // It does not say which number it is about. Answers come in the order of the questions,
        // but one may come when its question has been given up for that about another number.
        if (!unanswered_.isEmpty() && unanswered_.takeFirst() != checked_)
            return;
    }
    FormScreen::deviceAnswer(message);
}

void UserEnroll_ID::answered(const DeviceMessage& message) {
    if (message.p1 != command::id_check::Free) {
        RegCertiNumError(message.p1);
        return;
    }
    _gui_user_ now = user();
    CustomerNumber::set(now, checked_);
    setUser(now);
    EnrolStep::nextButtonTouch();
}

void UserEnroll_ID::RegCertiNumError(int result) {
    ShowPopup(result == command::id_check::InUse         ? NumberInUse
              : result == command::id_check::WrongLength ? NotEleven
                                                         : int(NoAnswer));
}

void UserEnroll_ID::ShowPopup(int code) {
    popup().showThen(code, [this] { showKeypad(); });
}

void UserEnroll_ID::abandon() {
    request_.cancel();
}
