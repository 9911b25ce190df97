#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_search_id.h"

/// Search for a user by customer number.
class UserSearch_ID : public FormScreen<Ui::UserSearch_ID> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
