#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserGroupInfo;
}

/// Numbers of users by group, and deleting whole groups.
class UserGroupInfo : public TitledForm {
    Q_OBJECT

 public:
    UserGroupInfo(QWidget* parent, const QString& title);
    ~UserGroupInfo() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserGroupInfo> ui_;
};
