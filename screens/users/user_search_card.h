#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_search_card.h"

/// Search for a user by card.
class UserSearch_Card : public FormScreen<Ui::UserSearch_Card> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
