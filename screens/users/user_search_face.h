#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_search_face.h"

/// Search for a user by face.
class UserSearch_Face : public FormScreen<Ui::UserSearch_Face> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
