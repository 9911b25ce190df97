#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "screens/users/unstored_offer.h"
#include "ui_user_menu_form.h"

/// The user menu.
class UserMenuForm : public FormScreen<Ui::UserMenuForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override {
        FormScreen::windowInEvent();
        UnstoredOffer::make(popup_);
    }

 private:
    ScreenPopup popup_{this, UnstoredOffer::kTexts};
};
