#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserInfoUpload;
}

/// Sends the users to the access controller.
class UserInfoUpload : public TitledForm {
    Q_OBJECT

 public:
    UserInfoUpload(QWidget* parent, const QString& title);
    ~UserInfoUpload() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserInfoUpload> ui_;
};
