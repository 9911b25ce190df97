#include "screens/recognize/input_admin_password.h"

#include "app/main_window.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui/styler.h"
#include "ui/theme.h"
#include "ui_input_admin_password.h"

namespace {

constexpr int kMostWrong = 3;

}  // namespace

InputAdminPassword::InputAdminPassword(QWidget* parent, const QString& title)
    : TitledForm(parent, title) {
    countdown_.setSingleShot(true);
    connect(&countdown_, &QTimer::timeout, this, &InputAdminPassword::showEntry);
}

InputAdminPassword::~InputAdminPassword() = default;

void InputAdminPassword::createForm() {
    ui_ = std::make_unique<Ui::InputAdminPassword>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
    connect(ui_->topBar, &TopBar::forwardTouched, this, &InputAdminPassword::okButtonTouch);
    connect(ui_->passwordField, &InputField::doneTouched, this, &InputAdminPassword::okButtonTouch);
    QPalette palette = ui_->messageLabel->palette();
    palette.setColor(QPalette::WindowText, Theme::color(Theme::kDanger));
    ui_->messageLabel->setPalette(palette);
}

void InputAdminPassword::windowInEvent() {
    TitledForm::windowInEvent();
    showEntry();
}

void InputAdminPassword::windowOutEvent() {
    TitledForm::windowOutEvent();
    countdown_.stop();
    ui_->passwordField->clear();
}

void InputAdminPassword::okButtonTouch() {
    const QString entered = ui_->passwordField->text();
    if (entered.isEmpty())
        return;
    MainWindow* shell = MainWindow::getMainWindow();
    if (entered != fieldText(shell->menuRecord().setup.adminPassword)) {
        refuse();
        return;
    }
    wrong_ = 0;
    shell->changeWindow(QStringLiteral("zelMenuWindow"));
}

void InputAdminPassword::refuse() {
    ui_->passwordField->clear();
    MainWindow* shell = MainWindow::getMainWindow();
    shell->PlaySound(command::sound::Error);
    if (++wrong_ == kMostWrong) {
        wrong_ = 0;
        lockedUntil_.setRemainingTime(lockTime_);
        showEntry();
    } else {
        say(shell->getScript(QStringLiteral("Info_WrongPassword")));
        shell->showTouchKey(ui_->passwordField);
    }
}

void InputAdminPassword::say(const ScriptHandler::Script& message) {
    Styler::setText(ui_->messageLabel, message);
    ui_->messageLabel->show();
}

void InputAdminPassword::showEntry() {
    MainWindow* shell = MainWindow::getMainWindow();
    const int left = static_cast<int>(lockedUntil_.remainingTime());
    ui_->passwordField->setEnabled(left == 0);
    ui_->topBar->button(TopBar::Forward)->setEnabled(left == 0);
    if (left == 0) {
        ui_->messageLabel->clear();
        ui_->messageLabel->hide();
        shell->showTouchKey(ui_->passwordField);
        return;
    }
    // Counts the seconds down, each one as it ends.
    ScriptHandler::Script message = shell->getScript(QStringLiteral("Info_PasswordLocked"));
    message.script = message.script.arg((left + 999) / 1000);
    say(message);
    countdown_.start((left - 1) % 1000 + 1);
}
