#include "screens/recognize/stay_window.h"

#include "app/main_window.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "ui_stay_window.h"

namespace {

constexpr int kClockInterval = 500;  // milliseconds
constexpr int kWakeSound = 201;

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
    shell->SendCommand(command::LivePicture, 0, 0);
    shell->SendCommand(command::RecognitionMode, 0, 0);
    shell->SendCommand(command::CameraRun, 0, 0);
    shell->StopMenuTimer();
    loadPictures();
    shell->SendCloseMessage(1);
    showTime();
    clockTimer_.start(kClockInterval);
    setSleepTimerReset();
}

void StayWindow::hideEvent(QHideEvent* event) {
    WindowForm::hideEvent(event);
    // A clock that nobody sees costs nothing.
    clockTimer_.stop();
    sleepTimer_.stop();
}

void StayWindow::loadPictures() {
    ui_->standbyView->setBackground(QPixmap());
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
    MainWindow::getMainWindow()->SendCommand(command::BurnInTimer, 0, 0);
}

void StayWindow::centerTouch() {
    MainWindow* shell = MainWindow::getMainWindow();
    shell->PlaySound(kWakeSound);
    shell->SendCommand(command::RecognitionMode, 1, 0);
    shell->SendCommand(command::CameraRun, 1, 0);
    shell->SendCommand(command::CameraPictureStart, 0, 0);
    shell->SendCommand(command::BurnInTimer, 1, 0);
    setSleepTimerReset();
    shell->changeWindow(QStringLiteral("liveWindow"));
}
