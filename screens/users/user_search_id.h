#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/user_search_step.h"
#include "ui_user_search_id.h"

/// Search for a user by customer number.
class UserSearch_ID : public FormScreen<Ui::UserSearch_ID, UserSearchStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    void nextButtonTouch();

 protected:
    void built() override;
    std::uint8_t type() const override;
    void notFound(DeviceRequest::Failure why) override;
    bool isAnswer(const QByteArray& record) const override;

 private:
    void say(int number);

    QString asked_;  // the number
};
