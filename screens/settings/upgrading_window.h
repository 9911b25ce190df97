#pragma once

#include "screens/common/form_screen.h"
#include "ui_upgrading_window.h"

/// Shown while firmware is being renewed. With a parameter it comes up for a download and shows
/// how far that is; without one the new firmware is in place. It takes either also while it is up.
/// A download goes on when the screen is left. No time-out takes it away as long as there is
/// something to come.
class upgradingWindow : public FormScreen<Ui::upgradingWindow> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    void setParam(QVariant param) override;
    void peersChanged() override;
    bool timesOut() const override { return false; }

 protected:
    void built() override;

 private:
    void showState();
    void showProgress(qint64 received, qint64 total, const QString& speed);
    void downloadEnded();

    bool downloading_ = false;
};
