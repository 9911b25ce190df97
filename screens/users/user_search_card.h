#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/user_search_step.h"
#include "ui_user_search_card.h"

/// Search for a user by card. It comes up when the controller has been told to wait for one.
class UserSearch_Card : public FormScreen<Ui::UserSearch_Card, UserSearchStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    bool timesOut() const override { return false; }

 protected:
    std::uint8_t type() const override;
    void notFound(DeviceRequest::Failure why) override;
    void giveUp() override;
};
