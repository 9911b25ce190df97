#include "screens/recognize/input_admin_password.h"

#include "app/administrator_session.h"
#include "app/screen_titles.h"
#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/same_secret.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui/styler.h"
#include "ui/theme.h"

namespace {

constexpr int kMostWrong = 3;
/// The message's property that holds its script key.
constexpr char kTextKey[] = "textKey";

}  // namespace

InputAdminPassword::InputAdminPassword(QWidget* parent, const QString& title)
    : FormScreen(parent, title) {
    countdown_.setSingleShot(true);
    connect(&countdown_, &QTimer::timeout, this, &InputAdminPassword::showEntry);
}

void InputAdminPassword::built() {
    connect(ui_->topBar, &TopBar::forwardTouched, this, &InputAdminPassword::okButtonTouch);
    connect(ui_->passwordField, &InputField::doneTouched, this, &InputAdminPassword::okButtonTouch);
    QPalette palette = ui_->messageLabel->palette();
    palette.setColor(QPalette::WindowText, Theme::color(Theme::kDanger));
    ui_->messageLabel->setPalette(palette);
}

void InputAdminPassword::windowInEvent() {
    FormScreen::windowInEvent();
    showEntry();
}

void InputAdminPassword::windowOutEvent() {
    FormScreen::windowOutEvent();
    countdown_.stop();
    ui_->passwordField->clear();
}

void InputAdminPassword::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    if (shell()->isAdministrator())
        proceed();
    else if (change.first)
        showEntry();
}

void InputAdminPassword::okButtonTouch() {
    const QString entered = ui_->passwordField->text();
    if (entered.isEmpty() || !shell()->settingsArrived())
        return;
    if (!sameSecret(entered, fieldText(shell()->menuRecord().setup.adminPassword))) {
        refuse();
        return;
    }
    wrong_ = 0;
    proceed();
}

void InputAdminPassword::proceed() {
    // A copy: the screen forgets its parameter as it is left.
    const auto purpose = param().value<PasswordPurpose>();
    shell()->passwordEntered(purpose);
}

void InputAdminPassword::refuse() {
    ui_->passwordField->clear();
    shell()->PlaySound(command::sound::Error);
    if (++wrong_ == kMostWrong) {
        wrong_ = 0;
        lockedUntil_.setRemainingTime(lockTime_);
        showEntry();
    } else {
        say(QStringLiteral("Info_WrongPassword"));
        shell()->showTouchKey(ui_->passwordField);
    }
}

void InputAdminPassword::scriptsApplied() {
    if (!ui_->messageLabel->property(kTextKey).toString().isEmpty())
        sayMessage();
}

void InputAdminPassword::say(const QString& key, const QString& argument) {
    ui_->messageLabel->setProperty(kTextKey, key);
    argument_ = argument;
    ui_->messageLabel->setVisible(!key.isEmpty());
    if (!key.isEmpty())
        sayMessage();
}

void InputAdminPassword::sayMessage() {
    ScriptHandler::Script message =
        shell()->getScript(ui_->messageLabel->property(kTextKey).toString());
    message.script.replace(QLatin1String("%1"), argument_);
    Styler::setText(ui_->messageLabel, message);
}

void InputAdminPassword::showEntry() {
    const bool known = shell()->settingsArrived();
    const int left = static_cast<int>(lockedUntil_.remainingTime());
    ui_->passwordField->setEnabled(known && left == 0);
    ui_->topBar->button(TopBar::Forward)->setEnabled(known && left == 0);
    if (!known) {
        // Nobody knows the password before the controller has told it.
        say(QStringLiteral("ListItem_NoController"));
        return;
    }
    if (left == 0) {
        say({});
        shell()->showTouchKey(ui_->passwordField);
        return;
    }
    // Counts the seconds down, each one as it ends.
    say(QStringLiteral("Info_PasswordLocked"), QString::number((left + 999) / 1000));
    countdown_.start((left - 1) % 1000 + 1);
}
