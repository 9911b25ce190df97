#pragma once

#include <memory>

#include "screens/common/titled_form.h"

namespace Ui {
class upgradingWindow;
}

/// Shown while firmware is being renewed. With a parameter it comes up for a download and shows
/// how far that is; without one the new firmware is in place. It takes either also while it is up.
/// A download goes on when the screen is left. No time-out takes it away as long as there is
/// something to come.
class upgradingWindow : public TitledForm {
    Q_OBJECT

 public:
    upgradingWindow(QWidget* parent, const QString& title);
    ~upgradingWindow() override;

    void windowInEvent() override;
    void setParam(QVariant param) override;
    void peersChanged() override;

 protected:
    void createForm() override;

 private:
    void showState();
    void showProgress(qint64 received, qint64 total, const QString& speed);
    void downloadEnded();

    std::unique_ptr<Ui::upgradingWindow> ui_;
    bool downloading_ = false;
};
