#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserEnroll;
}

/// First step of an enrolment: the way of authentication.
class UserEnroll : public TitledForm {
    Q_OBJECT

 public:
    UserEnroll(QWidget* parent, const QString& title);
    ~UserEnroll() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserEnroll> ui_;
};
