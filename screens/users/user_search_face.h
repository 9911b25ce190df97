#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserSearch_Face;
}

/// Search for a user by face.
class UserSearch_Face : public TitledForm {
    Q_OBJECT

 public:
    UserSearch_Face(QWidget* parent, const QString& title);
    ~UserSearch_Face() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserSearch_Face> ui_;
};
