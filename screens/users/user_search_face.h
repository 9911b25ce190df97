#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/user_search_step.h"
#include "ui_user_search_face.h"

class DialogForm;

/// Search for a user by face, before the running camera.
class UserSearch_Face : public FormScreen<Ui::UserSearch_Face, UserSearchStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    void windowOutEvent() override;
    bool timesOut() const override { return false; }
    /// Nobody was recognised in time: says so, and leads back to the choice.
    void timeOutDialog();

 protected:
    void built() override;
    void paintEvent(QPaintEvent* event) override;
    std::uint8_t type() const override;
    void notFound(DeviceRequest::Failure why) override;

 private:
    void stopCamera();
};
