#include "screens/users/enrol_step.h"

#include "app/screen_titles.h"
#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "screens/common/device_request.h"
#include "screens/users/customer_number.h"
#include "ui/step_bar.h"
#include "ui/top_bar.h"

namespace {

constexpr ScreenText kTexts[] = {
    {42, "Dialog_RegFaceComplete", ScreenText::Pass},
    {1001, "Dialog_EnrollNoController", ScreenText::Error},
    {1002, "Error_NoResponse", ScreenText::Error},
    {1003, "Dialog_RegistrationOff", ScreenText::Info},
};

}  // namespace

EnrolStep::EnrolStep(QWidget* parent, const QString& title)
    : TitledForm(parent, title), popup_(this, kTexts), flow_(EnrolFlow::none(title)) {}

void EnrolStep::connectForm(TopBar* bar) {
    TitledForm::connectForm(bar);
    bar_ = bar;
    stepBar_ = findChild<StepBar*>();
    connect(bar, &TopBar::neutralTouched, this, &EnrolStep::leave);
    connect(bar, &TopBar::forwardTouched, this, [this] { nextButtonTouch(); });
}

void EnrolStep::setParam(QVariant param) {
    if (param.canConvert<EnrolFlow>())
        flow_ = param.value<EnrolFlow>();
    TitledForm::setParam(std::move(param));
}

void EnrolStep::windowInEvent() {
    TitledForm::windowInEvent();
    ended_ = false;
    showFlow();
}

void EnrolStep::windowOutEvent() {
    abandon();
    TitledForm::windowOutEvent();
    flow_ = EnrolFlow::none(getTitle());
}

void EnrolStep::showFlow() {
    const QString previous = flow_.previousTitle();
    bar_->setBackVisible(!previous.isEmpty());
    bar_->setProperty("backTarget", previous);
    if (stepBar_ == nullptr)
        return;
    stepBar_->setStepCount(flow_.steps().size());
    stepBar_->setCurrentStep(flow_.stepNumber());
}

void EnrolStep::deviceAnswer(const DeviceMessage& message) {
    TitledForm::deviceAnswer(message);
    if (message.command == command::AutomaticUserId)
        autoId(CustomerNumber::read(message));
}

void EnrolStep::autoId(const QString& id) {
    _gui_user_ now = user();
    if (!flow_.isRunning() || now.customerId[0] != '\0' || now.userId[0] != '\0' ||
        !CustomerNumber::isValid(id))
        return;
    CustomerNumber::set(now, id);
    setUser(now);
}

void EnrolStep::peersChanged() {
    if (shell()->linkUp() || ended_) {
        TitledForm::peersChanged();
        return;
    }
    // Before the requests are told, since each would have something to say of its own.
    endWith(NoConnection);
    TitledForm::peersChanged();
}

void EnrolStep::settingsChanged(const SettingsChange& change) {
    TitledForm::settingsChanged(change);
    if (flow_.needsRegistrationMode() && change.now.registration.on == 0 && !ended_)
        endWith(RegistrationOff);
}

void EnrolStep::nextButtonTouch() {
    // A copy: the screen forgets it as it is left.
    const EnrolFlow flow = flow_;
    flow.goOn(*shell());
}

void EnrolStep::prevButtonTouch() {
    const EnrolFlow flow = flow_;
    flow.goBack(*shell());
}

void EnrolStep::homeButtonTouch() {
    leave();
}

void EnrolStep::leave() {
    if (!shell()->canChangeWindow())
        return;
    abandon();
    EnrolFlow::leave(*shell());
}

void EnrolStep::endWith(int number, int seconds, const QString& second) {
    abandon();
    ended_ = true;
    // The popup is read to its end and leads back by itself; unless something covers it for good.
    shell()->StartMenuTimer(2 * seconds, screen_title::kStandby);
    popup_.showThen(
        number, [this] { enrollCompleted(); }, seconds, second);
}

void EnrolStep::complete() {
    shell()->SendCommand(command::AskUserCounts, 0, 0);
    shell()->SendCommand(command::CameraRun, command::camera::Off, 0);
    endWith(Completed);
}

_gui_user_ EnrolStep::user() {
    _gui_user_ user;
    shell()->GetGuiUser(&user);
    return user;
}

void EnrolStep::setUser(const _gui_user_& user) {
    shell()->SetGuiUser(&user);
}

bool EnrolStep::store(_gui_user_ user, DeviceRequest& request) {
    if (user.registrationTime[0] == '\0')
        setFieldText(user.registrationTime,
                     Clock::now().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    setUser(user);
    return request.sendRecord(command::StoreUser, 0, 0, user, {command::UserStored}, kAnswerTime);
}
