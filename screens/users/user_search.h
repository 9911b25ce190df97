#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_search.h"

/// Choice of how to look for a user.
class UserSearch : public FormScreen<Ui::UserSearch> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
