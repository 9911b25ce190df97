#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserEnroll_ID;
}

/// Step of an enrolment: the customer number.
class UserEnroll_ID : public TitledForm {
    Q_OBJECT

 public:
    UserEnroll_ID(QWidget* parent, const QString& title);
    ~UserEnroll_ID() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserEnroll_ID> ui_;
};
