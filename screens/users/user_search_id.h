#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserSearch_ID;
}

/// Search for a user by customer number.
class UserSearch_ID : public TitledForm {
    Q_OBJECT

 public:
    UserSearch_ID(QWidget* parent, const QString& title);
    ~UserSearch_ID() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserSearch_ID> ui_;
};
