#pragma once

#include <memory>

#include "app/window_form.h"
#include "ui/visible_timer.h"

namespace Ui {
class StayWindow;
}

/// The standby screen: a large clock until somebody touches the panel.
class StayWindow : public WindowForm {
    Q_OBJECT

 public:
    StayWindow(QWidget* parent, const QString& title);
    ~StayWindow() override;

    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void settingsChanged(const SettingsChange& change) override;
    bool timesOut() const override { return false; }
    void peersChanged() override;
    /// Above the logo.
    int noticeTop() const override { return 0; }

    /// Shows the present time.
    void showTime();
    /// The panel has been touched: wakes the camera and goes to the live view.
    void centerTouch();
    /// Lights the panel and starts camera and recognition, for the screen that comes next.
    void wake();
    /// Starts the time to the burn-in protection anew.
    void setSleepTimerReset();

 protected:
    void createForm() override;
    void showEvent(QShowEvent* event) override;

 private:
    /// Wakes and goes to the live view; false where screens must not change.
    bool goLive();
    /// Burn-in protection: nothing is shown until somebody comes.
    void sleepTimeout();
    /// Ends that, and tells the controller.
    void wakePanel();
    void lightUp();
    void loadPictures();

    std::unique_ptr<Ui::StayWindow> ui_;
    // A clock that nobody sees costs nothing.
    VisibleTimer clockTimer_{this};
    VisibleTimer sleepTimer_{this};
};
