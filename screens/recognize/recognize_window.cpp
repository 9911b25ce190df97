#include "screens/recognize/recognize_window.h"

#include <QLabel>
#include <algorithm>
#include <utility>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "ui/pictures.h"
#include "ui/theme.h"
#include "ui/touch_shield.h"
#include "ui_recognize_window.h"

namespace {

constexpr int kMostMeals = 99;
/// Seconds where the settings do not say.
constexpr int kDefaultTime = 3;

// The buttons below: cancel alone, or beside the payment.
constexpr QRect kCancelAlone(24, 704, 432, 72);
constexpr QRect kCancelBesidePayment(24, 704, 160, 72);

ScriptHandler::Script script(const char* key) {
    return WindowForm::shell()->getScript(QLatin1String(key));
}

/// A text that somebody entered, without what would break a line.
QString oneLine(const QString& text) {
    return text.simplified();
}

}  // namespace

RecognizeWindow::RecognizeWindow(QWidget* parent, const QString& title)
    : WindowForm(parent, title) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &RecognizeWindow::timerEnd);
}

RecognizeWindow::~RecognizeWindow() = default;

void RecognizeWindow::createForm() {
    ui_ = std::make_unique<Ui::RecognizeWindow>();
    ui_->setupUi(this);
    shield_ = new TouchShield(this);
    ui_->band->setAutoFillBackground(true);
    ui_->bandIcon->setPixmap(Pictures::icon(QStringLiteral("band_ok.png")));
    connect(ui_->inOutButtons, &InOutButtonForm::inTouched, this, &RecognizeWindow::inButtonTouch);
    connect(ui_->inOutButtons, &InOutButtonForm::outTouched, this,
            &RecognizeWindow::outButtonTouch);
    connect(ui_->inOutButtons, &InOutButtonForm::outDutyTouched, this,
            &RecognizeWindow::outDutyButtonTouch);
    connect(ui_->inOutButtons, &InOutButtonForm::inDutyTouched, this,
            &RecognizeWindow::inDutyButtonTouch);
    connect(ui_->plusButton, &WidgetButton::touched, this, &RecognizeWindow::plusButtonTouch);
    connect(ui_->minusButton, &WidgetButton::touched, this, &RecognizeWindow::minusButtonTouch);
    connect(ui_->paymentButton, &WidgetButton::touched, this, &RecognizeWindow::paymentButtonTouch);
    connect(ui_->cancelButton, &WidgetButton::touched, this, &RecognizeWindow::cancelButtonTouch);
    connect(ui_->menuButton, &WidgetButton::touched, this, &RecognizeWindow::menuButtonTouch);
    showNobody();
}

void RecognizeWindow::scriptsApplied() {
    viewStateMode();
}

void RecognizeWindow::showEvent(QShowEvent* event) {
    WindowForm::showEvent(event);
    shell()->SendCommand(command::LivePicture, command::picture::Hidden, 0);
    startTimer(shell()->menuRecord().resultSeconds);
}

void RecognizeWindow::hideEvent(QHideEvent* event) {
    WindowForm::hideEvent(event);
    if (shell() == nullptr)
        return;
    shell()->SendCommand(command::RecognitionHidden, 0, 0);
    if (!paymentDone_)
        shell()->SendCommand(command::RecognitionKey, command::key::ScreenHidden, 0);
    // Nobody's data is to flash up before the next result.
    showNobody();
}

void RecognizeWindow::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::ShowLiveView) {
        timerEnd();
        return;
    }
    const auto result = message.record<RecognitionResult>();
    if (message.command != command::Recognised || !result)
        return;
    ensureForm();
    result_ = *result;
    arm_ = ArmState::None;
    recorded_ = WorkState::attendanceOfKey(result_.attendanceEvent);
    paymentDone_ = false;
    const QString userId = fieldText(result_.userId);
    setUserID(userId);
    showPage();
    setThumbnail(shell()->menuRecord().screen.showThumbnail, userId);
    selectMenu();
    emit resultReady();
}

void RecognizeWindow::setUserID(const QString& userId) {
    shell()->setState1N1(0);
    workMode_ = WorkState::shown(shell()->getWorkMode(), shell()->menuRecord());
    viewStateMode();
    startTimer(shell()->menuRecord().resultSeconds);

    const bool positive = accepted() || result_.result == Verdict::Registered;
    QPalette colors = ui_->band->palette();
    colors.setColor(QPalette::Window, Theme::color(positive ? Theme::kAccent : Theme::kDanger));
    ui_->band->setPalette(colors);
    ui_->bandIcon->setPixmap(
        Pictures::icon(positive ? QStringLiteral("band_ok.png") : QStringLiteral("band_fail.png")));
    ui_->resultLine->setInk(positive ? Theme::kOnAccent : Theme::kOnDanger);
    ui_->resultLine->setScript(shell()->getScript(resultKey()));
    ui_->band->show();
    ui_->userCard->show();
    ui_->menuButton->setRole(positive ? LabelButton::Primary : LabelButton::Danger);
    shell()->PlaySound(positive ? command::sound::Accepted : command::sound::Error);

    const QString customerId = oneLine(fieldText(result_.customerId));
    ui_->idLine->setText(customerId.isEmpty() ? oneLine(userId) : customerId);
}

void RecognizeWindow::showPage() {
    paymentCount_ = asksPayment() ? 1 : 0;
    updatePaymentCount();
    ui_->nameLine->setText(oneLine(fieldText(result_.name)));
    // A finger that came down for somebody else's result, or before this one could be read, decides
    // nothing.
    shield_->raiseShield();
}

void RecognizeWindow::setThumbnail(int show, const QString& userId) {
    QPixmap picture;
    if (show != 0) {
        const QString name = userId + QLatin1String(".jpg");
        for (const char* folder : {"/mnt/data/user/", "/mnt/data/thumb/"}) {
            if (picture.isNull())
                picture = Pictures::foreign(QLatin1String(folder), name, ui_->thumbnail->size());
        }
    }
    ui_->thumbnail->setPhoto(picture);
}

void RecognizeWindow::selectMenu() {
    if (asksPayment()) {
        ui_->cancelButton->setGeometry(kCancelBesidePayment);
        showLower({ui_->paymentPanel, ui_->cancelButton, ui_->paymentButton});
    } else if (accepted() && result_.askAttendance == 1) {
        ui_->inOutButtons->reset();
        ui_->cancelButton->setGeometry(kCancelAlone);
        showLower({ui_->promptLine, ui_->inOutButtons, ui_->cancelButton});
    } else if (accepted() && arm_ != ArmState::None) {
        ui_->armModeOkForm->setState(arm_);
        showLower({ui_->armModeOkForm});
    } else if (accepted() && recorded_ != nullptr) {
        ui_->inOutOkForm->setEvent(*recorded_);
        showLower({ui_->inOutOkForm});
    } else {
        if (accepted() || result_.result == Verdict::Registered)
            ui_->helloForm->welcome();
        else
            ui_->helloForm->refuse(betweenMeals());
        showLower({ui_->helloForm});
    }
}

void RecognizeWindow::setArmEvent(EVENT_TYPE event, ARM_BTN_TYPE button, ArmState state) {
    if (event != EVENT_TYPE::Alarm || button != ARM_BTN_TYPE::Ok)
        return;
    arm_ = state;
    viewStateMode();
    selectMenu();
}

void RecognizeWindow::viewStateMode() {
    const WorkState::Attendance* event =
        recorded_ != nullptr ? recorded_ : WorkState::attendanceOf(workMode_);
    QString icon = QStringLiteral("menu_user_24_accent.png");
    QString text = script("Info_ModeAccess").script;
    if (arm_ != ArmState::None && accepted()) {
        icon = QStringLiteral("shield_24_accent.png");
        text = script(arm_ == ArmState::Armed ? "Info_ModeArm" : "Info_ModeDisarm").script;
    } else if (const char* meal = WorkState::mealName(workMode_)) {
        icon = QStringLiteral("menu_meal_24_accent.png");
        text = script(meal).script;
    } else if (event != nullptr) {
        icon = QStringLiteral("menu_attendance_24_accent.png");
        text =
            script("Arg_WorkMode").script.replace(QLatin1String("%1"), script(event->word).script);
    } else if (WorkState::isMealOperation(shell()->menuRecord())) {
        icon = QStringLiteral("menu_meal_24_accent.png");
        text = script("Info_ModeMeals").script;
    }
    ui_->stateChip->setIconName(icon);
    ui_->stateChip->setText(text);
}

void RecognizeWindow::updatePaymentCount() {
    ui_->countLine->setText(
        script("Arg_logListInfoUID")
            .script.replace(QLatin1String("%1"), QString::number(paymentCount_)));
    ui_->minusButton->setLimited(paymentCount_ <= 1);
    ui_->plusButton->setLimited(paymentCount_ >= kMostMeals);
}

// --- What the person chooses ---------------------------------------------------------------

void RecognizeWindow::inButtonTouch() {
    recordAttendance(WorkState::kAttendance[0]);
}

void RecognizeWindow::outButtonTouch() {
    recordAttendance(WorkState::kAttendance[1]);
}

void RecognizeWindow::outDutyButtonTouch() {
    recordAttendance(WorkState::kAttendance[2]);
}

void RecognizeWindow::inDutyButtonTouch() {
    recordAttendance(WorkState::kAttendance[3]);
}

void RecognizeWindow::recordAttendance(const WorkState::Attendance& event) {
    shell()->SendCommand(command::RecognitionKey, event.key, 0);
    recorded_ = &event;
    viewStateMode();
    ui_->inOutOkForm->setEvent(event);
    showLower({ui_->inOutOkForm});
    startTimer(shell()->menuRecord().attendanceDoneSeconds);
}

void RecognizeWindow::plusButtonTouch() {
    changePaymentCount(paymentCount_ + 1);
}

void RecognizeWindow::minusButtonTouch() {
    changePaymentCount(paymentCount_ - 1);
}

void RecognizeWindow::changePaymentCount(int count) {
    paymentCount_ = qBound(1, count, kMostMeals);
    shell()->SendCommand(command::RecognitionKey, command::key::PayCount, 0);
    updatePaymentCount();
    startTimer(shell()->menuRecord().resultSeconds);
}

void RecognizeWindow::paymentButtonTouch() {
    paymentDone_ = true;
    const int count = std::exchange(paymentCount_, 0);
    shell()->SendCommand(command::RecognitionKey,
                         count == 1 ? command::key::PayOne : command::key::PaySeveral,
                         static_cast<quint8>(count));
    ScriptHandler::Script done = script("Info_PaymentCompleted");
    const char* meal = WorkState::mealName(workMode_);
    done.script.replace(QLatin1String("%1"), meal != nullptr ? script(meal).script : QString());
    done.script.replace(QLatin1String("%2"), QString::number(count));
    ui_->paymentOkForm->confirm(done);
    showLower({ui_->paymentOkForm});
    startTimer(shell()->menuRecord().paymentDoneSeconds);
}

void RecognizeWindow::cancelButtonTouch() {
    leaveTo(screen_title::kStandby);
}

void RecognizeWindow::menuButtonTouch() {
    emit menuRequested();
}

void RecognizeWindow::timerEnd() {
    if (shell()->getActivateWindowForm() == this)
        leaveTo(screen_title::kLive);
}

// --- Inside --------------------------------------------------------------------------------

void RecognizeWindow::leaveTo(const QString& title) {
    const QString next = param().isValid() ? param().toString() : title;
    if (shell()->changeWindow(next) != 0)
        timer_.start();  // until screens may change
}

void RecognizeWindow::showNobody() {
    ui_->band->hide();
    ui_->userCard->hide();
    ui_->thumbnail->setPhoto(QPixmap());
    showLower({});
}

void RecognizeWindow::showLower(std::initializer_list<const QWidget*> shown) {
    for (QWidget* part :
         std::initializer_list<QWidget*>{ui_->promptLine, ui_->inOutButtons, ui_->paymentPanel,
                                         ui_->paymentButton, ui_->cancelButton, ui_->helloForm,
                                         ui_->inOutOkForm, ui_->armModeOkForm, ui_->paymentOkForm})
        part->setVisible(std::find(shown.begin(), shown.end(), part) != shown.end());
}

void RecognizeWindow::startTimer(int seconds) {
    timer_.start((seconds > 0 ? seconds : kDefaultTime) * 1000);
}

QString RecognizeWindow::resultKey() const {
    switch (result_.result) {
        case Verdict::Accepted:
            break;
        case Verdict::NoAccessTime:
            // A canteen has no entrance to speak of.
            return WorkState::isMealOperation(shell()->menuRecord())
                       ? QStringLiteral("Info_NoMealTime")
                       : QStringLiteral("Info_NoAccessTime");
        case Verdict::Registered:
            return QStringLiteral("Info_Registered");
        case Verdict::MealTaken:
            return QStringLiteral("Info_MealTaken");
        default:
            return QStringLiteral("Info_NotPermitted");
    }
    if (result_.demo == 1)
        return QStringLiteral("Info_Authenticated_TnA_DEMO");
    return WorkState::attendanceOf(workMode_) != nullptr ? QStringLiteral("Info_Authenticated_TnA")
                                                         : QStringLiteral("Info_Authenticated");
}

bool RecognizeWindow::accepted() const {
    return result_.result == Verdict::Accepted;
}

bool RecognizeWindow::asksPayment() const {
    return accepted() && workMode_ != WorkMode::AccessOnly &&
           WorkState::isMealOperation(shell()->menuRecord());
}

bool RecognizeWindow::betweenMeals() const {
    return result_.result == Verdict::MealTaken ||
           (result_.result == Verdict::NoAccessTime && workMode_ == WorkMode::AccessOnly &&
            WorkState::isMealOperation(shell()->menuRecord()));
}
