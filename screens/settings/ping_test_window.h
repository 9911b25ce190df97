#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "screens/settings/ping_run.h"
#include "ui_ping_test_window.h"

class PingModel;

/// Sends pings to an address and shows what comes back, until it is stopped or the screen is left.
class PingTestWindow : public FormScreen<Ui::PingTestWindow> {
    Q_OBJECT

 public:
    PingTestWindow(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void settingsChanged(const SettingsChange& change) override;
    /// What became of the request number @p number.
    void GetTestResult(int number, PingRun::Outcome outcome, double milliseconds);

 public slots:
    void startButtonTouch();
    void stopButtonTouch();

 protected:
    void built() override;
    void scriptsApplied() override;

 private:
    void showState();
    void showAddresses();

    PingRun run_{this};
    PingModel* const lines_;
    ScreenPopup popup_;
};
