#include "screens/users/user_search_step.h"

#include <QVariant>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui/text_line.h"

namespace {

constexpr ScreenText kTexts[] = {
    {1001, "ListItem_NoController", ScreenText::Error},
    {1002, "Error_NoResponse", ScreenText::Error},
};

}  // namespace

UserSearchStep::UserSearchStep(QWidget* parent, const QString& title)
    : TitledForm(parent, title), request_(this), popup_(this, kTexts), second_(this) {
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        stopSearching();
        notFound(why);
    });
    connect(&second_, &QTimer::timeout, this, [this] {
        left_ = qMax(0, left_ - 1);
        showSeconds();
    });
}

void UserSearchStep::windowInEvent() {
    TitledForm::windowInEvent();
    line_ = nullptr;
}

void UserSearchStep::windowOutEvent() {
    if (request_.isWaiting())
        giveUp();
    stopSearching();
    TitledForm::windowOutEvent();
}

void UserSearchStep::await(int seconds, TextLine* line) {
    request_.await({command::UserFound}, seconds * 1000);
    line_ = line;
    left_ = seconds;
    showSeconds();
    if (line_ != nullptr)
        second_.start(1000);
}

void UserSearchStep::stopSearching() {
    request_.cancel();
    second_.stop();
    popup_.endWait();
}

void UserSearchStep::showSeconds() {
    if (line_ == nullptr)
        return;
    const QString text = shell()->getScript(QStringLiteral("Info_SecondsLeft")).script;
    line_->setText(QString(text).replace(QLatin1String("%1"), QString::number(left_)));
}

void UserSearchStep::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::UserFound && searches(message.p2))
        searchResult(message.p1, QByteArray(message.payload, message.length));
}

void UserSearchStep::searchResult(std::uint8_t result, const QByteArray& record) {
    if (result == command::answer::Done && !isAnswer(record))
        return;
    const UserSearchOutcome outcome{result, type(), record};
    stopSearching();
    shell()->changeWindow(screen_title::kUserInfo, QVariant::fromValue(outcome));
}

void UserSearchStep::notFound(DeviceRequest::Failure why) {
    leadBack(why == DeviceRequest::Failure::LinkDown ? NoConnection : NoAnswer,
             ScreenPopup::kSeconds);
}

void UserSearchStep::leadBack(int number, int seconds) {
    // Unless something covers the popup for good.
    shell()->StartMenuTimer(2 * seconds, screen_title::kStandby);
    popup_.showThen(
        number,
        [this] {
            prevButtonTouch();
            shell()->StartMenuTimer();
        },
        seconds);
}
