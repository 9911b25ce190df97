#include "screens/users/user_info_upload.h"

#include <QLocale>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"

namespace {

constexpr int kPopupSeconds = 3;
constexpr int kSilence = 20000;  // milliseconds without a report that end a transfer

enum Text {
    kComplete = 1,
    kCancelFirst = 2,
    kCancelled = 5,
    kNoUser = 7,
    kNoNewUser = 8,
    kFail = 9,
    kNoController = 1001,
};

constexpr ScreenText kTexts[] = {
    {kComplete, "Popup_UploadComplete", ScreenText::Pass},
    {kCancelFirst, "Popup_UploadCancelFirst", ScreenText::Error},
    {3, "Popup_UploadRestoreConnection", ScreenText::Warning},
    {4, "Popup_UploadExceeded", ScreenText::Warning},
    {kCancelled, "Popup_UploadCancel", ScreenText::Info},
    {6, "Popup_UploadCancel", ScreenText::Info},
    {kNoUser, "Popup_UploadNoUser", ScreenText::Info},
    {kNoNewUser, "Popup_UploadNoNewUser", ScreenText::Info},
    {kFail, "Popup_UploadFail", ScreenText::Warning},
    {11, "Popup_UploadExceededWireless", ScreenText::Warning},
    {kNoController, "ListItem_NoController", ScreenText::Error},
};

constexpr int kRunsAlready = 1;

/// What is said of a result.
constexpr struct {
    int result;
    int popup;
} kOutcomes[] = {{0, kComplete}, {2, 3}, {3, 4}, {4, kCancelled}, {15, 11}};

QString number(std::uint32_t count) {
    return QLocale(QLocale::English).toString(count);
}

}  // namespace

UserInfoUpload::UserInfoUpload(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts), request_(this) {
    connect(&request_, &DeviceRequest::answered, this,
            [this](const DeviceMessage& message) { ShowUserSendResult(message.p1, message.p2); });
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        setState(State::Idle);
        ShowPopup(why == DeviceRequest::Failure::LinkDown ? kNoController : kFail);
    });
}

void UserInfoUpload::built() {
    connect(ui_->newUserButton, &WidgetButton::touched, this, &UserInfoUpload::newUserButtonTouch);
    connect(ui_->allUserButton, &WidgetButton::touched, this, &UserInfoUpload::allUserButtonTouch);
    connect(ui_->cancelButton, &WidgetButton::touched, this, &UserInfoUpload::cancelButtonTouch);
}

void UserInfoUpload::windowInEvent() {
    FormScreen::windowInEvent();
    setState(State::Idle);
    setUserCount(shell()->menuRecord().users);
    askCounts();
}

void UserInfoUpload::windowOutEvent() {
    FormScreen::windowOutEvent();
    // The controller goes on with what it has begun, which is shown again if another is started.
    setState(State::Idle);
}

void UserInfoUpload::askCounts() {
    shell()->SendCommand(command::AskUserCounts, 0, 0);
}

// --- What is asked for ---------------------------------------------------------------------

void UserInfoUpload::newUserButtonTouch() {
    if (busy())
        ShowPopup(kFail);
    else if (unsent_ == 0)
        ShowPopup(kNoNewUser);
    else
        start(command::upload::New, unsent_);
}

void UserInfoUpload::allUserButtonTouch() {
    if (busy())
        ShowPopup(kFail);
    else if (unsent_ == 0 && all_ == 0)
        ShowPopup(kNoUser);
    else
        start(command::upload::All, qMax(all_, unsent_));
}

void UserInfoUpload::start(unsigned char which, std::uint32_t users) {
    if (!request_.send(command::UploadUsers, which, command::upload::Start, {},
                       {command::UsersUploaded}, kSilence)) {
        ShowPopup(kNoController);
        return;
    }
    shell()->StopMenuTimer();
    total_ = users;
    // Until the controller tells how many are left.
    unsent_ = users;
    setState(State::Running);
}

void UserInfoUpload::cancelButtonTouch() {
    if (state_ != State::Running)
        return;
    shell()->SendCommand(command::UploadUsers, command::upload::New, command::upload::Cancel);
    setState(State::Cancelling);
}

// --- What is reported ----------------------------------------------------------------------

void UserInfoUpload::deviceAnswer(const DeviceMessage& message) {
    const bool awaited = request_.isWaiting();
    FormScreen::deviceAnswer(message);
    if (message.command == command::UserCountsAnswer)
        GetUserCount(message);
    else if (message.command == command::UsersUploaded && !awaited)
        ShowUserSendResult(message.p1, message.p2);
}

void UserInfoUpload::GetUserCount(const DeviceMessage& message) {
    if (const auto counts = message.record<UserCounts>())
        setUserCount(*counts);
}

void UserInfoUpload::setUserCount(const UserCounts& counts) {
    all_ = counts.all;
    unsent_ = counts.unsent;
    ui_->newUserButton->setValue(number(unsent_));
    ui_->allUserButton->setValue(number(all_));
    if (!busy())
        return;
    request_.extend();
    // Somebody else may have enrolled people meanwhile.
    total_ = qMax(total_, unsent_);
    showProgress();
}

void UserInfoUpload::ShowUserSendResult(int result, int) {
    request_.cancel();
    if (result == kRunsAlready) {
        // Begun before the screen was left, say: there is something to cancel again.
        shell()->StopMenuTimer();
        request_.await({command::UsersUploaded}, kSilence);
        setState(State::Running);
        ShowPopup(kCancelFirst);
        askCounts();
        return;
    }
    const bool ran = busy();
    if (ran && result == 0) {
        unsent_ = 0;
        showProgress();
    }
    setState(State::Idle);
    for (const auto& outcome : kOutcomes) {
        if (outcome.result == result)
            ShowPopup(outcome.popup);
    }
    askCounts();
}

void UserInfoUpload::setState(State state) {
    state_ = state;
    if (ui_ == nullptr)
        return;
    ui_->cancelButton->setEnabled(state == State::Running);
    ui_->progressPanel->setVisible(busy());
    if (busy())
        showProgress();
    else if (isVisible())
        shell()->StartMenuTimer();
}

void UserInfoUpload::showProgress() {
    const std::uint32_t sent = total_ - qMin(unsent_, total_);
    const int percent = total_ > 0 ? static_cast<int>(quint64(sent) * 100 / total_) : 0;
    ui_->progressBar->setValue(percent);
    ui_->percentLine->setText(QString::number(percent) + QLatin1Char('%'));
    ui_->countLine->setText(QStringLiteral("%1 / %2").arg(number(sent), number(total_)));
}

void UserInfoUpload::ShowPopup(int code) {
    // The time of the menu begins when it has been read; unless something covers it for good.
    if (busy())
        shell()->StopMenuTimer();
    else
        shell()->StartMenuTimer(2 * kPopupSeconds, screen_title::kStandby);
    popup_.showThen(
        code,
        [this] {
            if (!busy())
                shell()->StartMenuTimer();
        },
        kPopupSeconds);
}
