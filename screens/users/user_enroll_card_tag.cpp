#include "screens/users/user_enroll_card_tag.h"

#include <algorithm>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"

namespace {

constexpr int kWait = 20000;       // milliseconds, for a card
constexpr int kNumberTime = 1000;  // milliseconds
constexpr int kOtherUsersSeconds = 10;
constexpr int kGroup = 4;  // digits of a card number that stand together

enum Popup {
    OwnAlready = 1,
    StoreFull = 4,
    OtherUsers = 10,
    TimedOut = 34,
    OtherEnrolment = 36,
    TooManyAdministrators = 38,
    NotRead = 51,
    AskFace = 60,
    AskFaceBoth = 61,
};

constexpr ScreenText kTexts[] = {
    {OwnAlready, "Dialog_IsAlreadyRegisteredCard", ScreenText::Error},
    {StoreFull, "Error_MaxUsersExcceeded", ScreenText::Error},
    {OtherUsers, "Info_CardAlreadyRegistered", ScreenText::Error},
    {TimedOut, "Error_InputTimeout", ScreenText::Error},
    {OtherEnrolment, "Error_EnrollingUsers", ScreenText::Error},
    {TooManyAdministrators, "Dialog_RegFaceFailed_UpToAdmin5", ScreenText::Error},
    {NotRead, "Error_CardNotRead", ScreenText::Error},
    {AskFace, "Dialog_AddFaceToCard", ScreenText::Question, nullptr, "Dialog_ButtonAdd",
     "Dialog_ButtonComplete"},
    {AskFaceBoth, "Dialog_AddFaceToCard", ScreenText::Question, "Info_FaceNeededToPass",
     "Dialog_ButtonAdd", "Dialog_ButtonComplete"},
};

struct CardNumber {
    char text[16];
};

struct UserId {
    char text[16];
};

bool isCardNumber(const QString& text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar one) {
        return one.unicode() < 128 && one.isLetterOrNumber();
    });
}

QString grouped(const QString& number) {
    QString shown;
    for (int i = 0; i < number.size(); i += kGroup)
        shown += (i > 0 ? QStringLiteral(" ") : QString()) + number.mid(i, kGroup);
    return shown;
}

}  // namespace

UserEnroll_CardTag::UserEnroll_CardTag(QWidget* parent, const QString& title)
    : FormScreen(parent, title) {
    secondsTimer_.setInterval(1000);
    connect(&secondsTimer_, &QTimer::timeout, this, &UserEnroll_CardTag::showSeconds);
    numberTimer_.setObjectName(QStringLiteral("numberTimer"));
    numberTimer_.setSingleShot(true);
    numberTimer_.setInterval(kNumberTime);
    connect(&numberTimer_, &QTimer::timeout, this, &UserEnroll_CardTag::proceed);
    connect(&request_, &DeviceRequest::answered, this, &UserEnroll_CardTag::answered);
    connect(&request_, &DeviceRequest::failed, this, &UserEnroll_CardTag::failed);
}

void UserEnroll_CardTag::built() {
    popup().add(kTexts);
    showRead(false);
    ui_->animation->play({QStringLiteral("card_hold_1.png"), QStringLiteral("card_hold_2.png"),
                          QStringLiteral("card_hold_3.png")},
                         600, true);
}

void UserEnroll_CardTag::windowInEvent() {
    FormScreen::windowInEvent();
    wait();
}

void UserEnroll_CardTag::wait() {
    showFlow();
    ui_->topBar->button(TopBar::Forward)->setEnabled(false);
    ui_->numberText->setText(QString());
    ui_->secondsText->show();
    showRead(false);
    until_.setRemainingTime(kWait);
    showSeconds();
    if (!flow().isRunning())
        return;
    state_ = State::Waiting;
    if (!flow().startCapture(*shell())) {
        endWith(NoConnection);
        return;
    }
    request_.await({command::CardEnrolled, command::EnrolmentRefused}, kWait);
    secondsTimer_.start();
    // The reader's time is the one that counts here.
    shell()->StopMenuTimer();
}

void UserEnroll_CardTag::showRead(bool read) {
    // Each keeps its layout, which another text would cost whenever the screen comes up.
    ui_->promptLabel->setVisible(!read);
    ui_->readLabel->setVisible(read);
}

void UserEnroll_CardTag::showSeconds() {
    const auto left = static_cast<int>(until_.remainingTime() + 999) / 1000;
    ui_->secondsText->setText(
        shell()->getScript(QStringLiteral("Info_SecondsLeft")).script.arg(left));
}

void UserEnroll_CardTag::answered(const DeviceMessage& message) {
    switch (message.command) {
        case command::CardEnrolled:
            if (const auto number = message.record<CardNumber>())
                SetCardResult(message.p1, message.p2, fieldText(number->text));
            else
                SetCardResult(command::answer::Failed, message.p2, QString());
            break;
        case command::EnrolmentRefused:
            ShowPopup(message.p1 == command::refused::StoreFull          ? StoreFull
                      : message.p1 == command::refused::EnrolmentRunning ? OtherEnrolment
                                                                         : int(NoAnswer),
                      End);
            break;
        case command::UserChanged:
            if (message.p1 == command::store::Done)
                request_.await({command::CardTagged}, kAnswerTime);
            else
                refused(message.p1);
            break;
        case command::CardTagged:
            if (message.p1 == command::tagged::Done)
                cardTagOK();
            else
                RegCardError(message.p1);
            break;
        default:
            if (message.p1 == command::store::Done)
                stored(message);
            else
                refused(message.p1);
            break;
    }
}

void UserEnroll_CardTag::failed(DeviceRequest::Failure why) {
    if (why == DeviceRequest::Failure::TimedOut && state_ == State::Waiting)
        ShowPopup(TimedOut, End);
    else
        endWith(NoAnswer);
}

void UserEnroll_CardTag::SetCardResult(int result, int type, const QString& cardNumber) {
    secondsTimer_.stop();
    if (result != command::answer::Done || !isCardNumber(cardNumber)) {
        ShowPopup(NotRead, WaitAgain);
        return;
    }
    ui_->secondsText->hide();
    // The controller stores the user now, which the step before cannot take back.
    ui_->topBar->setBackVisible(false);
    showRead(true);
    ui_->numberText->setText(grouped(cardNumber));
    numberTimer_.start();
    state_ = State::Storing;
    _gui_user_ now = user();
    setFieldText(now.cardNumber, cardNumber);
    now.cardType = static_cast<std::uint8_t>(type);
    now.cardPresent = 1;
    if (!request_.sendRecord(command::ChangeUser, 0, 0, now,
                             {command::UserChanged, command::CardTagged}, kAnswerTime))
        endWith(NoConnection);
    else
        setUser(now);
}

void UserEnroll_CardTag::RegCardError(int result) {
    if (result == command::tagged::OwnAlready)
        ShowPopup(OwnAlready, WaitAgain);
    else
        endWith(OtherUsers, kOtherUsersSeconds);
}

void UserEnroll_CardTag::cardTagOK() {
    if (!store(user(), request_))
        endWith(NoConnection);
}

void UserEnroll_CardTag::refused(int result) {
    ShowPopup(result == command::store::EnrolmentRunning        ? OtherEnrolment
              : result == command::store::TooManyAdministrators ? TooManyAdministrators
              : result == command::store::StoreFull             ? StoreFull
                                                                : NotRead,
              End);
}

void UserEnroll_CardTag::stored(const DeviceMessage& message) {
    state_ = State::Stored;
    // Whoever had no ID has been given one; what is stored of them further goes by it.
    const auto id = message.record<UserId>();
    if (_gui_user_ now = user(); id && id->text[0] != '\0') {
        std::memcpy(now.userId, id->text, sizeof now.userId);
        setUser(now);
    }
    ui_->topBar->button(TopBar::Forward)->setEnabled(true);
    proceed();
}

void UserEnroll_CardTag::proceed() {
    if (state_ != State::Stored || numberTimer_.isActive())
        return;
    state_ = State::Idle;
    ui_->topBar->button(TopBar::Forward)->setEnabled(false);
    if (flow().hasNext())
        RegProcessRestartAsk();
    else
        complete();
}

void UserEnroll_CardTag::nextButtonTouch() {
    // The number has been read before its time is over.
    numberTimer_.stop();
    proceed();
}

void UserEnroll_CardTag::RegProcessRestartAsk() {
    // The question has no time of its own.
    shell()->StartMenuTimer();
    popup().ask(
        user().authMethod == AuthMethod::FaceAndCard ? AskFaceBoth : AskFace,
        [this] { EnrolStep::nextButtonTouch(); }, [this] { complete(); });
}

void UserEnroll_CardTag::ShowPopup(int code, int type) {
    if (type == WaitAgain) {
        // It is read to its end, and the wait begins anew; unless something covers it for good.
        shell()->StartMenuTimer(2 * ScreenPopup::kSeconds, screen_title::kStandby);
        popup().showThen(code, [this] { wait(); });
    } else if (code == Completed)
        complete();
    else
        endWith(code);
}

void UserEnroll_CardTag::abandon() {
    request_.cancel();
    secondsTimer_.stop();
    numberTimer_.stop();
    if (state_ == State::Waiting || state_ == State::Storing)
        flow().abandonCapture(*shell());
    state_ = State::Idle;
}
