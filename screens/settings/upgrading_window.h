#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class upgradingWindow;
}

/// Shown while firmware is being renewed.
class upgradingWindow : public TitledForm {
    Q_OBJECT

 public:
    upgradingWindow(QWidget* parent, const QString& title);
    ~upgradingWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::upgradingWindow> ui_;
};
