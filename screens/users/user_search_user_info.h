#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_search_user_info.h"

/// One user: shown, changed, deleted.
class UserSearch_userInfo : public FormScreen<Ui::UserSearch_userInfo> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
