#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_user_search.h"

/// Choice of how to look for a user.
class UserSearch : public FormScreen<Ui::UserSearch> {
    Q_OBJECT

 public:
    UserSearch(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    /// Hands what a search of the kind @p type has come to over to the screen that waits for it, if
    /// there is one; @p result 0: @p message carries the user's record.
    void searchResult(unsigned char result, unsigned char type, const DeviceMessage& message);

 protected:
    void built() override;

 private:
    void cardButtonTouch();

    ScreenPopup popup_;
};
