#pragma once

#include <optional>

#include "link/device_records.h"
#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_user_search_user_info.h"

class ListRow;

/// One user: shown, changed, deleted. It comes up with the UserSearchOutcome of a search, or else
/// with the user who waits to be stored again, if there is one.
///
/// A change that takes data away has the controller delete the user and store what is left. Until
/// the controller has confirmed that, the user is an UnstoredUser: the screen offers to try again,
/// also after it was left.
class UserSearch_userInfo : public FormScreen<Ui::UserSearch_userInfo> {
    Q_OBJECT

 public:
    UserSearch_userInfo(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;

    /// Shows what a search of the kind @p type has found; @p result 0: @p record is a _gui_user_;
    /// asks::NothingTagged: the time was over.
    void GetUserInfo(unsigned char result, unsigned char type, unsigned short length,
                     const char* record);
    /// Says why nobody was found, or asks whether the user shown is to be deleted; the values are
    /// those of command::asks.
    void GetUserDelInfo(unsigned char result, unsigned char type, unsigned short length,
                        const char* record);
    /// @p result is a DeleteOutcome; other values say nothing.
    void ShowDeleteResult(int result);
    void ShowUserChangeResult(bool changed);
    /// Shows popup number @p code for @p seconds; a wait stays, and the question about deleting is
    /// asked. A number without a text shows nothing.
    void ShowPopup(int code, int seconds);

    void saveButtonTouch();
    void deleteButtonTouch();
    /// Leads to the enrolment of what the user lacks for @p mode, one of AuthMethod.
    void moveEnrollMode(int mode);

    enum DeleteOutcome { Deleted = 1, NotDeleted = 2 };

 protected:
    void built() override;
    void prevButtonTouch() override;

 private:
    enum class Task { None, Delete, DeleteAndStore, Store };

    void show(const _gui_user_& user);
    void showNobody();
    void showName(const QString& name);
    void setUsable(bool usable);
    void showTexts();
    void showCredential(ListRow* row, bool present);
    /// The user with what was entered; nothing, after a popup, when that is not possible.
    std::optional<_gui_user_> edited();
    bool begin(Task task);
    void deleteAndStore(const _gui_user_& user);
    void store(const _gui_user_& user);
    /// Shows and stores the user who is kept; false when nobody is.
    bool storeKept();
    bool isOfShown();
    void answered(const DeviceMessage& message);
    void failed(DeviceRequest::Failure why);
    void end();
    /// The user is in no store: asks whether to try again.
    void offerStore();
    void enrolMissing(bool face);

    ScreenPopup popup_;
    DeviceRequest request_;
    DeviceRequest reason_;  // why nobody was found
    Task task_ = Task::None;
    std::optional<_gui_user_> user_;  // as the controller holds it, or is to
    _gui_user_ sent_{};
    bool unstored_ = false;  // the controller may hold the user no longer
    QString late_;           // whose deletion was not answered in time
};
