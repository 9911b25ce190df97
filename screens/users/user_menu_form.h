#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_menu_form.h"

/// The user menu.
class UserMenuForm : public FormScreen<Ui::UserMenuForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
