#include "screens/users/user_search_id.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "screens/users/user_record.h"

namespace {

constexpr int kEnterEleven = 50;
constexpr int kSearching = 51;
constexpr int kAnswerSeconds = 10;

constexpr ScreenText kTexts[] = {
    {kEnterEleven, "Error_EnterEleven", ScreenText::Error},
    {kSearching, "Info_Searching", ScreenText::Wait},
};

}  // namespace

void UserSearch_ID::built() {
    popup().add(kTexts);
    connect(ui_->topBar, &TopBar::forwardTouched, this, &UserSearch_ID::nextButtonTouch);
    connect(ui_->numberEntry, &InputField::doneTouched, this, &UserSearch_ID::nextButtonTouch);
}

void UserSearch_ID::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->numberEntry->clear();
    shell()->showTouchKey(ui_->numberEntry);
}

std::uint8_t UserSearch_ID::type() const {
    return command::search::ById;
}

void UserSearch_ID::nextButtonTouch() {
    if (request().isWaiting())
        return;
    shell()->removeTouchKey();
    const QString number = ui_->numberEntry->text();
    // The management service may have sent shorter ones than are entered here.
    if (number.isEmpty()) {
        say(kEnterEleven);
        return;
    }
    const QByteArray text = number.toLatin1();
    if (!shell()->SendCommand(command::SearchUser, command::search::ById, 0,
                              static_cast<unsigned short>(text.size()), text.constData())) {
        say(NoConnection);
        return;
    }
    asked_ = number;
    await(kAnswerSeconds);
    popup().wait(kSearching);
}

void UserSearch_ID::notFound(DeviceRequest::Failure why) {
    say(why == DeviceRequest::Failure::LinkDown ? NoConnection : NoAnswer);
}

bool UserSearch_ID::isAnswer(const QByteArray& record) const {
    DeviceMessage message;
    message.length = static_cast<unsigned short>(record.size());
    message.payload = record.constData();
    const auto user = message.record<_gui_user_>();
    const auto is = [this](const QString& id) {
        return id == asked_ || UserRecord::ParsingPhoneNum(id) == asked_;
    };
    return !user || is(fieldText(user->customerId)) || is(fieldText(user->userId));
}

void UserSearch_ID::say(int number) {
    // What was entered stays, to be put right.
    popup().showThen(number, [this] { shell()->showTouchKey(ui_->numberEntry); });
}
