#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class InputAdminPassword;
}

/// Asks for the administrator's password before the menu.
class InputAdminPassword : public TitledForm {
    Q_OBJECT

 public:
    InputAdminPassword(QWidget* parent, const QString& title);
    ~InputAdminPassword() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::InputAdminPassword> ui_;
};
