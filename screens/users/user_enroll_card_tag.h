#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserEnroll_CardTag;
}

/// Step of an enrolment: the card.
class UserEnroll_CardTag : public TitledForm {
    Q_OBJECT

 public:
    UserEnroll_CardTag(QWidget* parent, const QString& title);
    ~UserEnroll_CardTag() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserEnroll_CardTag> ui_;
};
