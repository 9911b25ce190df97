#include "screens/facesearch/input_sub.h"

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"

namespace {

constexpr int kAnswerTime = 10000;  // milliseconds

enum Text {
    kUnregistered = 1,
    kEnterEleven = 22,
    kChecking = 51,
    kNoConnection = 1001,
    kNoAnswer,
};

constexpr ScreenText kTexts[] = {
    {kUnregistered, "ListItem_UnregisteredID", ScreenText::Error},
    {kEnterEleven, "Error_EnterEleven", ScreenText::Error},
    {kChecking, "Info_Searching", ScreenText::Wait},
    {kNoConnection, "ListItem_NoController", ScreenText::Error},
    {kNoAnswer, "Error_NoResponse", ScreenText::Error},
};

}  // namespace

InputSub::InputSub(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts), request_(this) {
    connect(&request_, &DeviceRequest::answered, this,
            [this](const DeviceMessage& message) { getResult(message.p1); });
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        say(why == DeviceRequest::Failure::LinkDown ? kNoConnection : kNoAnswer);
    });
}

void InputSub::built() {
    connect(ui_->topBar, &TopBar::forwardTouched, this, &InputSub::nextButtonTouch);
    connect(ui_->numberEntry, &InputField::doneTouched, this, &InputSub::nextButtonTouch);
}

void InputSub::windowInEvent() {
    FormScreen::windowInEvent();
    shell()->SendCommand(command::LivePicture, command::picture::Hidden, 0);
    ui_->numberEntry->clear();
    shell()->showTouchKey(ui_->numberEntry);
}

void InputSub::nextButtonTouch() {
    if (request_.isWaiting())
        return;
    shell()->removeTouchKey();
    if (!ui_->numberEntry->isComplete()) {
        say(kEnterEleven);
        return;
    }
    if (request_.send(command::TextEntered, 0, 0, ui_->numberEntry->text().toLatin1(),
                      {command::NumberChecked}, kAnswerTime))
        popup_.wait(kChecking);
    else
        say(kNoConnection);
}

void InputSub::getResult(int result) {
    popup_.endWait();
    if (result == command::number_check::Registered) {
        shell()->setState1N1(1);
        // It comes up looking for people, since that was ended when this screen was opened.
        shell()->changeWindow(screen_title::kLive);
        return;
    }
    say(result == command::number_check::WrongLength ? kEnterEleven : kUnregistered);
}

void InputSub::say(int number) {
    // What was entered stays, to be put right.
    popup_.showThen(number, [this] { shell()->showTouchKey(ui_->numberEntry); });
}
