#pragma once

#include <QSet>

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_user_group_info.h"

class GroupRow;
struct UserCounts;

/// Numbers of users by group, and deleting whole groups. What was deleted here is told to the
/// management service, but for those who may only go in and out. The screen cannot be left while
/// the controller deletes.
class UserGroupInfo : public FormScreen<Ui::UserGroupInfo> {
    Q_OBJECT

 public:
    UserGroupInfo(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;

    void UpdateUserCount(const UserCounts& counts);
    /// The controller has deleted @p group, or not; one of command::user_group.
    void ShowAllDeleteResult(bool ok, unsigned char group, const char* data);
    /// Shows popup number @p code for @p seconds; a wait stays. A number without a text shows
    /// nothing.
    void ShowPopup(int code, int seconds);

 protected:
    void built() override;

 private:
    void askDelete(int group);
    void deleteGroup(int group);
    void askCounts();
    void tellService(int group);

    ScreenPopup popup_;
    DeviceRequest request_;
    int deleting_ = -1;
    QSet<int> late_;  // groups whose deletion was not answered in its time, on this connection
};
