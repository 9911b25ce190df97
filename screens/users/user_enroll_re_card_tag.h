#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserEnroll_ReCardTag;
}

/// The card step, entered again for a user who is there already.
class UserEnroll_ReCardTag : public TitledForm {
    Q_OBJECT

 public:
    UserEnroll_ReCardTag(QWidget* parent, const QString& title);
    ~UserEnroll_ReCardTag() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserEnroll_ReCardTag> ui_;
};
