#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UsbMenu;
}

/// What can be moved between the terminal and a USB stick.
class UsbMenu : public TitledForm {
    Q_OBJECT

 public:
    UsbMenu(QWidget* parent, const QString& title);
    ~UsbMenu() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UsbMenu> ui_;
};
