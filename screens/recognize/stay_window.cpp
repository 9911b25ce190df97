#include "screens/recognize/stay_window.h"

#include <QFile>

#include "app/screen_titles.h"
#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "base/device_paths.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "screens/recognize/recognition.h"
#include "screens/standby_pictures.h"
#include "ui_stay_window.h"

namespace {

constexpr int kClockInterval = 500;  // milliseconds

}  // namespace

StayWindow::StayWindow(QWidget* parent, const QString& title) : WindowForm(parent, title) {
    connect(&clockTimer_, &QTimer::timeout, this, &StayWindow::showTime);
    sleepTimer_.setSingleShot(true);
    connect(&sleepTimer_, &QTimer::timeout, this, &StayWindow::sleepTimeout);
}

StayWindow::~StayWindow() = default;

void StayWindow::createForm() {
    ui_ = std::make_unique<Ui::StayWindow>();
    ui_->setupUi(this);
    connect(ui_->standbyView, &StandbyView::touched, this, &StayWindow::centerTouch);
}

void StayWindow::showEvent(QShowEvent* event) {
    WindowForm::showEvent(event);
    shell()->SendCommand(command::LivePicture, command::picture::Hidden, 0);
    Recognition::stop(*shell());
    loadPictures();
    shell()->SendCloseMessage(command::closed::ByMenuTimeout);
    lightUp();
}

void StayWindow::windowOutEvent() {
    WindowForm::windowOutEvent();
    // Whatever takes over, and for whatever reason, is to be seen.
    if (ui_->standbyView->isDark())
        wakePanel();
}

void StayWindow::deviceAnswer(const DeviceMessage& message) {
    if (!isVisible())
        return;
    switch (message.command) {
        case command::SleepScreen:
            sleepTimeout();
            break;
        case command::WakeScreen:
            wakePanel();
            break;
        case command::ShowLiveView:
            goLive();
            break;
        case command::RecognitionFailed:
            // A card was refused; the live view tells why.
            if (goLive())
                shell()->getActivateWindowForm()->deviceAnswer(message);
            break;
        default:
            break;
    }
}

void StayWindow::settingsChanged(const SettingsChange& change) {
    WindowForm::settingsChanged(change);
    // The boot screen, which decides this, was over before the controller came.
    if (change.first && change.now.commissioned == 0 && isVisible() &&
        !QFile::exists(DevicePaths::at(QStringLiteral("/mnt/data/rebootchkr")))) {
        shell()->changeWindow(screen_title::kSetupMenu);
        return;
    }
    loadPictures();
    peersChanged();
    if (!ui_->standbyView->isDark())
        setSleepTimerReset();
}

void StayWindow::peersChanged() {
    if (!ui_->standbyView->isDark())
        ui_->peerSign->setPeers(*shell());
}

void StayWindow::loadPictures() {
    const ScreenBlock screen = shell()->menuRecord().screen;
    ui_->standbyView->setBackground(screen.standbyMode == StandbyMode::ChosenPicture
                                        ? StandbyPictures::background(screen.standbyPicture)
                                        : QPixmap());
    ui_->standbyView->setLogo(StandbyPictures::logo());
}

void StayWindow::showTime() {
    ui_->standbyView->setTime(Clock::now());
}

void StayWindow::setSleepTimerReset() {
    const int seconds = shell()->getSleepMode();
    if (seconds > 0)
        sleepTimer_.start(seconds * 1000);
    else
        sleepTimer_.stop();
}

void StayWindow::sleepTimeout() {
    sleepTimer_.stop();
    clockTimer_.stop();
    ui_->standbyView->setDark(true);
    ui_->peerSign->hide();
    shell()->SendCommand(command::BurnInTimer, command::burn_in::Darken, 0);
}

void StayWindow::wakePanel() {
    shell()->SendCommand(command::BurnInTimer, command::burn_in::Wake, 0);
    lightUp();
}

void StayWindow::lightUp() {
    ui_->standbyView->setDark(false);
    peersChanged();
    showTime();
    clockTimer_.start(kClockInterval);
    setSleepTimerReset();
}

void StayWindow::wake() {
    Recognition::start(*shell());
    wakePanel();
}

bool StayWindow::goLive() {
    if (!shell()->canChangeWindow()) {
        wakePanel();
        return false;
    }
    wake();
    return shell()->changeWindow(screen_title::kLive) == 0;
}

void StayWindow::centerTouch() {
    shell()->PlaySound(command::sound::Wake);
    goLive();
}
