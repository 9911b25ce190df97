#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserEnroll_Qualification;
}

/// Step of an enrolment: level, rights and glasses.
class UserEnroll_Qualification : public TitledForm {
    Q_OBJECT

 public:
    UserEnroll_Qualification(QWidget* parent, const QString& title);
    ~UserEnroll_Qualification() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserEnroll_Qualification> ui_;
};
