#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserMenuForm;
}

/// The user menu.
class UserMenuForm : public TitledForm {
    Q_OBJECT

 public:
    UserMenuForm(QWidget* parent, const QString& title);
    ~UserMenuForm() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserMenuForm> ui_;
};
