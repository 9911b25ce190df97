#pragma once

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_user_info_upload.h"

struct UserCounts;

/// Sends the users to the access controller: those that it does not have, or all.
class UserInfoUpload : public FormScreen<Ui::UserInfoUpload> {
    Q_OBJECT

 public:
    UserInfoUpload(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;

    void newUserButtonTouch();
    void allUserButtonTouch();
    /// Has the transfer that runs cancelled.
    void cancelButtonTouch();
    /// Takes the controller's report of how many users there are; one of another size says nothing.
    void GetUserCount(const DeviceMessage& message);
    /// Takes how many users there are, and while a transfer runs how far it has come.
    void setUserCount(const UserCounts& counts);
    /// Takes the end of a transfer, or that another one runs, which is then shown; the values are
    /// those of UsersUploaded, of which the second says nothing here.
    void ShowUserSendResult(int result, int detail = 0);
    void ShowPopup(int code);

 protected:
    void built() override;

 private:
    enum class State { Idle = 0, Running = 2, Cancelling = 5 };

    bool busy() const { return state_ != State::Idle; }
    void start(unsigned char which, std::uint32_t users);
    void setState(State state);
    void showProgress();
    void askCounts();

    ScreenPopup popup_;
    DeviceRequest request_;
    State state_ = State::Idle;
    std::uint32_t all_ = 0;
    std::uint32_t unsent_ = 0;
    std::uint32_t total_ = 0;  // of the transfer that runs
};
