#pragma once

#include <memory>

#include "screens/common/titled_form.h"

namespace Ui {
class upgradingWindow;
}

/// Shown while firmware is being renewed. With a parameter it comes up for a download and shows
/// how far that is; a download goes on when the screen is left.
class upgradingWindow : public TitledForm {
    Q_OBJECT

 public:
    upgradingWindow(QWidget* parent, const QString& title);
    ~upgradingWindow() override;

    void windowInEvent() override;

 protected:
    void createForm() override;

 private:
    void showProgress(qint64 received, qint64 total, const QString& speed);

    std::unique_ptr<Ui::upgradingWindow> ui_;
};
