#pragma once

#include <QTimer>
#include <memory>

#include "app/window_form.h"

namespace Ui {
class StayWindow;
}

/// The standby screen: a large clock until somebody touches the panel.
class StayWindow : public WindowForm {
    Q_OBJECT

 public:
    StayWindow(QWidget* parent, const QString& title);
    ~StayWindow() override;

    void deviceAnswer(const DeviceMessage& message) override;
    void settingsChanged(const SettingsChange& change) override;
    bool timesOut() const override { return false; }

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
    void hideEvent(QHideEvent* event) override;

 private:
    /// Burn-in protection: nothing is shown until somebody comes.
    void sleepTimeout();
    void lightUp();
    void loadPictures();

    std::unique_ptr<Ui::StayWindow> ui_;
    QTimer clockTimer_;
    QTimer sleepTimer_;
};
