#include "screens/settings/setup_default.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui/list_row.h"

namespace {

using namespace command::initialise;

constexpr int kAnswerTime = 30000;  // milliseconds
constexpr int kPopupSeconds = 3;

/// The questions and waits of the resets have the numbers of what is reset, from 1 on.
constexpr int numberOf(unsigned char what) {
    return what + 1;
}
constexpr int kRestart = numberOf(Everything) + 1;

enum Popup { kLogsDeleted = 1, kReset, kNotReset, kNoAnswer, kNoController };
constexpr auto Error = ScreenText::Error;
constexpr auto Wait = ScreenText::Wait;
constexpr ScreenText kTexts[] = {
    {numberOf(Logs), "ListItem_AskResetLogs", ScreenText::Danger, "ListItem_CannotBeUndone",
     "Button_DeleteNow"},
    {numberOf(Settings), "ListItem_AskResetSettings", ScreenText::Danger,
     "ListItem_SettingsAreLost", "Button_ResetNow"},
    {numberOf(Everything), "ListItem_AskResetEverything", ScreenText::Grave, nullptr,
     "Button_ResetNow"},
    {kRestart, "ListItem_AskRestart", ScreenText::Danger, "ListItem_NobodyVerified",
     "Button_RestartNow"},

    {numberOf(Logs), "ListItem_DeletingLogs", Wait},
    {numberOf(Settings), "ListItem_Resetting", Wait},
    {numberOf(Everything), "ListItem_Resetting", Wait},
    {kRestart, "ListItem_Restarting", Wait},

    {kLogsDeleted, "ListItem_LogStoreEmptied", ScreenText::Pass},
    {kReset, "ListItem_ResetComplete", ScreenText::Pass},
    {kNotReset, "Error_NotReset", Error},
    {kNoAnswer, "Error_NoAnswer", Error},
    {kNoController, "ListItem_NoController", Error},
};

}  // namespace

SetupDefault::SetupDefault(QWidget* parent, const QString& title)
    : FormScreen(parent, title), reset_(this), restart_(this), popup_(this, kTexts) {
    const auto giveUp = [this](bool linkDown) {
        popup_.show(linkDown ? kNoController : kNoAnswer, kPopupSeconds);
    };
    connect(&reset_, &DeviceRequest::answered, this,
            [this](const DeviceMessage& message) { ShowResetResult(message.p1, message.p2); });
    connect(&reset_, &DeviceRequest::failed, this, [giveUp](DeviceRequest::Failure why) {
        giveUp(why == DeviceRequest::Failure::LinkDown);
    });
    connect(&restart_, &DeviceRequest::failed, this, [this, giveUp](DeviceRequest::Failure why) {
        // The controller restarts with the terminal: its end is what was asked for.
        if (why == DeviceRequest::Failure::TimedOut)
            giveUp(false);
        else
            popup_.endWait();
    });
}

void SetupDefault::built() {
    connect(ui_->logsRow, &WidgetButton::touched, this, [this] { ask(Logs); });
    connect(ui_->settingsRow, &WidgetButton::touched, this, [this] { ask(Settings); });
    connect(ui_->everythingRow, &WidgetButton::touched, this, [this] { ask(Everything); });
    connect(ui_->restartRow, &WidgetButton::touched, this,
            [this] { popup_.ask(kRestart, [this] { restart(); }); });
}

void SetupDefault::homeButtonTouch() {
    // With everything gone the terminal has to be set up first.
    if (shell()->menuRecord().commissioned != 0)
        FormScreen::homeButtonTouch();
    else
        prevButtonTouch();
}

void SetupDefault::windowOutEvent() {
    FormScreen::windowOutEvent();
    popup_.endWait();
}

void SetupDefault::deviceAnswer(const DeviceMessage& message) {
    // One that has come too late for its own reset, or the service's, is not about this one.
    if (message.command != command::Initialised || message.p2 == what_)
        FormScreen::deviceAnswer(message);
}

void SetupDefault::ask(unsigned char what) {
    const auto agreed = [this, what] { reset(what); };
    QString below;
    if (what == Everything) {
        below = shell()->getScript(QStringLiteral("ListItem_UsersAreLost")).script;
        below = below.arg(shell()->menuRecord().users.all);
    }
    popup_.ask(numberOf(what), agreed, {}, below);
}

void SetupDefault::reset(unsigned char what) {
    if (!reset_.send(command::Initialise, what, 0, {}, {command::Initialised}, kAnswerTime)) {
        popup_.show(kNoController, kPopupSeconds);
        return;
    }
    what_ = what;
    popup_.wait(numberOf(what));
}

void SetupDefault::restart() {
    if (!restart_.send(command::Reboot, 0, 0, {}, {}, kAnswerTime)) {
        popup_.show(kNoController, kPopupSeconds);
        return;
    }
    popup_.wait(kRestart);
}

void SetupDefault::ShowResetResult(unsigned char result, unsigned char what) {
    if (result != command::answer::Done)
        popup_.show(kNotReset, kPopupSeconds);
    else
        popup_.show(what == Logs ? kLogsDeleted : kReset, kPopupSeconds);
}
