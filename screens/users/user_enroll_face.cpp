#include "screens/users/user_enroll_face.h"

#include <QPainter>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui/theme.h"

namespace {

namespace capture = command::capture;

constexpr int kGuardTime = 20000;  // milliseconds without a word of the capture
constexpr int kQuarter = 25;       // percent

enum Popup {
    TooManyAdministrators = 13,
    OtherEnrolment = 36,
    StoreFull = 40,
    Failed = 50,
    ByResult = 100,  // and the result
};

constexpr ScreenText kTexts[] = {
    {TooManyAdministrators, "Dialog_EnrollUpTo5Admin", ScreenText::Error},
    {OtherEnrolment, "Error_EnrollingUsers", ScreenText::Error},
    {StoreFull, "Error_MaxUsersExcceeded", ScreenText::Error},
    {Failed, "Dialog_RegFaceFailed", ScreenText::Error},
    // It has a sound of its own.
    {ByResult + capture::FaceInUse, "Dialog_FaceIsAlreadyRegisteredForId", ScreenText::Warning},
    {ByResult + capture::SeveralFaces, "Dialog_RegFaceFailed_12", ScreenText::Error},
    {ByResult + capture::TooManyAdministrators, "Dialog_RegFaceFailed_UpToAdmin5",
     ScreenText::Error},
    {ByResult + capture::NotClear, "Dialog_RegFaceFailed_14", ScreenText::Error},
    {ByResult + capture::IdInUse, "Dialog_CustomerNumberIsAlreadyRegistered", ScreenText::Error},
};

struct Id {
    char text[16];
};

/// The text of a payload that may be shorter than its field.
QString textOf(const DeviceMessage& message) {
    Id id{};
    if (message.payload != nullptr)
        std::memcpy(id.text, message.payload, qMin<std::size_t>(message.length, sizeof id.text));
    return fieldText(id.text);
}

/// Dialogs take markup; an ID has none, and nothing that cannot be seen.
QString shown(const QString& id) {
    QString line;
    for (const QChar one : id)
        line += one.isPrint() ? one : QChar(QChar::ReplacementCharacter);
    return line.toHtmlEscaped();
}

}  // namespace

UserEnroll_Face::UserEnroll_Face(QWidget* parent, const QString& title)
    : FormScreen(parent, title) {
    connect(&request_, &DeviceRequest::answered, this, &UserEnroll_Face::answered);
    connect(&request_, &DeviceRequest::failed, this, [this] {
        if (capturing_)
            enrollFail();
        else
            endWith(NoAnswer);
    });
}

void UserEnroll_Face::built() {
    popup().add(kTexts);
    // The camera's picture must show through the ring.
    setAutoFillBackground(false);
}

void UserEnroll_Face::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(0, 0, width(), ui_->ring->y(), Theme::color(Theme::kBackground));
}

void UserEnroll_Face::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->ring->setPercent(0);
    setEnrollState(user().glasses == 1 ? capture::WithGlasses : capture::WithoutGlasses);
    shell()->SendCommand(command::FaceEnrolmentScreen, command::picture::Shown, 0);
    shell()->SendCommand(command::CameraPictureStart, 0, 0);
    if (!flow().isRunning())
        return;
    shell()->PlaySound(command::sound::FaceCapture);
    enrollStart();
}

void UserEnroll_Face::windowOutEvent() {
    FormScreen::windowOutEvent();
    shell()->SendCommand(command::FaceEnrolmentScreen, command::picture::Hidden, 0);
    shell()->SendCommand(command::CameraPictureStop, 0, 0);
}

void UserEnroll_Face::enrollStart() {
    stage_ = 0;
    capturing_ = flow().startCapture(*shell());
    if (!capturing_) {
        endWith(NoConnection);
        return;
    }
    shell()->StopMenuTimer();
    request_.await({command::FaceEnrolled}, kGuardTime);
}

void UserEnroll_Face::answered(const DeviceMessage& message) {
    if (message.command == command::FaceEnrolled)
        enrollResult(message.p1, message.p2, textOf(message));
    else
        stored(message.p1);
}

void UserEnroll_Face::setPercent(int percent) {
    ui_->ring->setPercent(percent);
    for (const int reached = qBound(0, percent, 100) / kQuarter; capturing_ && stage_ < reached;)
        shell()->SendCommand(command::FaceEnrolmentProgress, static_cast<quint8>(++stage_), 0);
}

void UserEnroll_Face::setEnrollState(int state) {
    switch (state) {
        case capture::WithoutGlasses:
            ui_->guide->tell(QStringLiteral("Info_PleaseRegisterToNoWearingGlasses"),
                             QStringLiteral("noglasses.gif"));
            break;
        case capture::Again:
            ui_->guide->tell(QStringLiteral("Info_PleaseTryAgain"), QString());
            break;
        case capture::WithGlasses:
            ui_->guide->tell(QStringLiteral("Info_PleaseRegisterToWearingGlasses"),
                             QStringLiteral("glasses.gif"));
            break;
        default:
            break;
    }
}

void UserEnroll_Face::enrollResult(int result, int value, const QString& text) {
    if (result == capture::Guidance || result == capture::Progress) {
        if (result == capture::Guidance)
            setEnrollState(value);
        else
            setPercent(value);
        request_.await({command::FaceEnrolled}, kGuardTime);
        return;
    }
    capturing_ = false;
    if (result == capture::Done) {
        shell()->PlaySound(command::sound::FaceEnrolled);
        _gui_user_ now = user();
        now.facePresent = 1;
        if (store(now, request_))
            shell()->SendCommand(command::EnrolmentFinished, 0, 0);
        else
            endWith(NoConnection);
        return;
    }
    if (result == capture::FaceInUse)
        shell()->PlaySound(command::sound::FaceInUse);
    const bool known = result == capture::FaceInUse ||
                       (result >= capture::SeveralFaces && result <= capture::IdInUse);
    endWith(known ? ByResult + result : int(Failed), ScreenPopup::kSeconds, shown(text));
}

void UserEnroll_Face::stored(int result) {
    switch (result) {
        case command::store::Done:
            complete();
            break;
        case command::store::EnrolmentRunning:
            ShowPopup(OtherEnrolment);
            break;
        case command::store::TooManyAdministrators:
            ShowPopup(TooManyAdministrators);
            break;
        case command::store::StoreFull:
            ShowPopup(StoreFull);
            break;
        default:
            ShowPopup(Failed);
            break;
    }
}

void UserEnroll_Face::enrollFail() {
    ShowPopup(Failed);
}

void UserEnroll_Face::ShowPopup(int code) {
    endWith(code);
}

void UserEnroll_Face::abandon() {
    request_.cancel();
    if (capturing_)
        flow().abandonCapture(*shell(), static_cast<quint8>(stage_));
    capturing_ = false;
}
