#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserEnroll_Face;
}

/// Step of an enrolment: the face.
class UserEnroll_Face : public TitledForm {
    Q_OBJECT

 public:
    UserEnroll_Face(QWidget* parent, const QString& title);
    ~UserEnroll_Face() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserEnroll_Face> ui_;
};
