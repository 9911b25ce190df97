#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_group_info.h"

/// Numbers of users by group, and deleting whole groups.
class UserGroupInfo : public FormScreen<Ui::UserGroupInfo> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
