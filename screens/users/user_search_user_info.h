#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserSearch_userInfo;
}

/// One user: shown, changed, deleted.
class UserSearch_userInfo : public TitledForm {
    Q_OBJECT

 public:
    UserSearch_userInfo(QWidget* parent, const QString& title);
    ~UserSearch_userInfo() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserSearch_userInfo> ui_;
};
