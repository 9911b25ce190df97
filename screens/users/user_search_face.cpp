#include "screens/users/user_search_face.h"

#include <QPainter>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/theme.h"

namespace {

constexpr int kDialogSeconds = 10;
constexpr int kUnregistered = 1;

constexpr ScreenText kTexts[] = {
    {kUnregistered, "Dialog_UnregisteredUser", ScreenText::Error, nullptr, "Dialog_ButtonConfirm"},
};

}  // namespace

void UserSearch_Face::built() {
    // The camera's picture must show through.
    setAutoFillBackground(false);
    popup().add(kTexts);
    connect(ui_->topBar, &TopBar::neutralTouched, this, &UserSearch_Face::prevButtonTouch);
}

void UserSearch_Face::paintEvent(QPaintEvent*) {
    // The ring stands lower than the bar.
    QPainter(this).fillRect(0, 0, width(), ui_->ring->y(), Theme::color(Theme::kBackground));
}

void UserSearch_Face::windowInEvent() {
    FormScreen::windowInEvent();
    shell()->SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell()->SendCommand(command::CameraRun, command::camera::On, 0);
    shell()->SendCommand(command::CameraPictureStart, 0, 0);
    if (shell()->SendCommand(command::SearchUser, command::search::ByFace, 0))
        await(kSearchSeconds, ui_->secondsLine);
    else
        FormScreen::notFound(DeviceRequest::Failure::LinkDown);
}

void UserSearch_Face::windowOutEvent() {
    FormScreen::windowOutEvent();
    stopCamera();
}

std::uint8_t UserSearch_Face::type() const {
    return command::search::ByFace;
}

void UserSearch_Face::notFound(DeviceRequest::Failure why) {
    stopCamera();
    if (why == DeviceRequest::Failure::LinkDown)
        FormScreen::notFound(why);
    else
        timeOutDialog();
}

void UserSearch_Face::timeOutDialog() {
    leadBack(kUnregistered, kDialogSeconds);
}

void UserSearch_Face::stopCamera() {
    shell()->SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell()->SendCommand(command::CameraRun, command::camera::Off, 0);
    shell()->SendCommand(command::CameraPictureStop, 0, 0);
}
