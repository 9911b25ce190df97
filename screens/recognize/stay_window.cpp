#include "screens/recognize/stay_window.h"

#include "app/main_window.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
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
    MainWindow* shell = MainWindow::getMainWindow();
    shell->SendCommand(command::LivePicture, command::picture::Hidden, 0);
    shell->SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell->SendCommand(command::CameraRun, command::camera::Off, 0);
    loadPictures();
    shell->SendCloseMessage(command::closed::ByMenuTimeout);
    lightUp();
}

void StayWindow::hideEvent(QHideEvent* event) {
    WindowForm::hideEvent(event);
    // A clock that nobody sees costs nothing.
    clockTimer_.stop();
    sleepTimer_.stop();
}

void StayWindow::deviceAnswer(const DeviceMessage& message) {
    if (!isVisible())
        return;
    MainWindow* shell = MainWindow::getMainWindow();
    switch (message.command) {
        case command::SleepScreen:
            sleepTimeout();
            break;
        case command::WakeScreen:
            shell->SendCommand(command::BurnInTimer, command::burn_in::Wake, 0);
            lightUp();
            break;
        case command::ShowLiveView:
            wake();
            shell->changeWindow(QStringLiteral("liveWindow"));
            break;
        case command::RecognitionFailed:
            // A card was refused; the live view tells why.
            wake();
            if (shell->changeWindow(QStringLiteral("liveWindow")) == 0)
                shell->getActivateWindowForm()->deviceAnswer(message);
            break;
        default:
            break;
    }
}

void StayWindow::settingsChanged(const SettingsChange& change) {
    WindowForm::settingsChanged(change);
    loadPictures();
    if (!ui_->standbyView->isDark())
        setSleepTimerReset();
}

void StayWindow::loadPictures() {
    const ScreenBlock screen = MainWindow::getMainWindow()->menuRecord().screen;
    ui_->standbyView->setBackground(screen.standbyMode == StandbyMode::ChosenPicture
                                        ? StandbyPictures::background(screen.standbyPicture)
                                        : QPixmap());
    ui_->standbyView->setLogo(StandbyPictures::logo());
}

void StayWindow::showTime() {
    ui_->standbyView->setTime(Clock::now());
}

void StayWindow::setSleepTimerReset() {
    const int seconds = MainWindow::getMainWindow()->getSleepMode();
    if (seconds > 0)
        sleepTimer_.start(seconds * 1000);
    else
        sleepTimer_.stop();
}

void StayWindow::sleepTimeout() {
    sleepTimer_.stop();
    clockTimer_.stop();
    ui_->standbyView->setDark(true);
    MainWindow::getMainWindow()->SendCommand(command::BurnInTimer, command::burn_in::Darken, 0);
}

void StayWindow::lightUp() {
    ui_->standbyView->setDark(false);
    showTime();
    clockTimer_.start(kClockInterval);
    setSleepTimerReset();
}

void StayWindow::wake() {
    MainWindow* shell = MainWindow::getMainWindow();
    shell->SendCommand(command::RecognitionMode, command::recognition::On, 0);
    shell->SendCommand(command::CameraRun, command::camera::On, 0);
    shell->SendCommand(command::CameraPictureStart, 0, 0);
    shell->SendCommand(command::BurnInTimer, command::burn_in::Wake, 0);
    lightUp();
}

void StayWindow::centerTouch() {
    MainWindow* shell = MainWindow::getMainWindow();
    shell->PlaySound(command::sound::Wake);
    wake();
    shell->changeWindow(QStringLiteral("liveWindow"));
}
