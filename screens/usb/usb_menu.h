#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_usb_menu.h"

class QTimer;

/// What can be moved between the terminal and a USB stick. The device controller does it all; the
/// screen asks for it and shows how it goes.
///
/// What can be done is shown while there is a stick. It is mounted when the screen comes up, unless
/// the parameter is true: then the user comes back from a screen about the stick.
class UsbMenu : public FormScreen<Ui::UsbMenu> {
    Q_OBJECT

 public:
    UsbMenu(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void peersChanged() override;

    /// The controller's reports, by their header parameters.
    void UpdateUsbInfo(int state, int sub);
    void ShowUsbGetResult(int kind, int result);
    void ShowUsbSetResult(int kind, int result);
    void ShowFwUpgrade(int state, int percent);
    void ShowUsbProgress(int phase, int percent);
    void showPercent(int phase, int percent);

    /// Shows wait text number @p number, from 0 percent on with a progress bar. A number without a
    /// text shows nothing.
    void ShowWait(int number, int percent = -1);
    /// Shows popup number @p number for @p seconds, 0 for until it is closed by hand. A number
    /// without a text shows nothing.
    void ShowPopup(int number, int seconds);

 public slots:
    /// Asks for the stick to be mounted.
    void mount_usb();
    /// The mount has had its time.
    void UsbCheckTimeout();
    /// Asks whether the stick is still there, and will again.
    void UsbCheckMountTimeout();
    void outLogData();
    /// Exports what @p action names; an unknown name does nothing.
    void showDirSelecter(const QString& action);
    /// Lets the user choose the file for the import that @p action names.
    void showFileSelecter(const QString& action);

 protected:
    void built() override;
    void scriptsApplied() override;
    void hideEvent(QHideEvent* event) override;

 private:
    void showActionButtons();
    void hideActionButtons();
    void showStatus(const char* key);
    /// What is being transferred cannot go on, and the user learns why.
    void interrupt(int reason);
    /// It has come to its end, which popup number @p popup tells.
    void transferEnds(int popup, bool stickGone);
    void openFileSelecter(const QString& action);

    QTimer* const mountCheckTimer_;
    QTimer* const presenceTimer_;
    ScreenPopup popup_;
    ScreenPopup restartPopup_;  // stays when the screen goes
    ScreenPopup interruption_;  // stays when another popup has come
    const char* statusKey_;
    bool mountCheckRunning_ = false;
    bool stickPresent_ = false;
    bool transferRuns_ = false;
    int lastPercent_ = 0;
};
