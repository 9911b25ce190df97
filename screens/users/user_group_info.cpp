#include "screens/users/user_group_info.h"

#include <utility>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"

namespace {

namespace user_group = command::user_group;

constexpr int kMostUsers = 9999;
constexpr int kAnswerTime = 60000;  // milliseconds; thousands of people take their time
constexpr int kNone = -1;

enum Text {
    kDeleted = 5,  // and the group's number
    kFailed = 10,
    kDeleting = 16,
    kAsk = 101,  // and the group's number
    kNoConnection = 1001,
    kNoAnswer,
};

constexpr ScreenText kTexts[] = {
    {kDeleted + user_group::General, "ListItem_AllRegularUsersDeleted", ScreenText::Pass},
    {kDeleted + user_group::Administrators, "ListItem_AllAdminUsersDeleted", ScreenText::Pass},
    {kDeleted + user_group::InOut, "ListItem_AllAccessUsersDeleted", ScreenText::Pass},
    {kDeleted + user_group::All, "ListItem_AllUsersDeleted", ScreenText::Pass},
    {kDeleted + user_group::FaceOnly, "ListItem_AllFaceUsersDeleted", ScreenText::Pass},
    {kFailed, "ListItem_FailedDeleted", ScreenText::Error},
    {kDeleting, "ListItem_Deleting", ScreenText::Wait},
    {kAsk + user_group::General, "ListItem_AllGeneralUsers", ScreenText::Danger},
    {kAsk + user_group::Administrators, "ListItem_DeleteAllAdmins", ScreenText::Danger},
    {kAsk + user_group::InOut, "ListItem_DeleteAllInOutUsers", ScreenText::Danger},
    {kAsk + user_group::All, "ListItem_DeleteAllUsers", ScreenText::Danger},
    {kAsk + user_group::FaceOnly, "ListItem_DeleteFaceOnlyUsers", ScreenText::Danger},
    {kNoConnection, "ListItem_NoController", ScreenText::Error},
    {kNoAnswer, "Error_NoResponse", ScreenText::Error},
};

}  // namespace

UserGroupInfo::UserGroupInfo(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts), request_(this) {
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        shell()->setChangeWindowFlag(true);
        if (why == DeviceRequest::Failure::TimedOut)
            late_.insert(deleting_);
        deleting_ = kNone;
        ShowPopup(why == DeviceRequest::Failure::LinkDown ? kNoConnection : kNoAnswer,
                  ScreenPopup::kSeconds);
        askCounts();
    });
}

void UserGroupInfo::built() {
    const std::pair<GroupRow*, int> rows[] = {{ui_->allRow, user_group::All},
                                              {ui_->generalRow, user_group::General},
                                              {ui_->inOutRow, user_group::InOut},
                                              {ui_->faceOnlyRow, user_group::FaceOnly},
                                              {ui_->adminRow, user_group::Administrators}};
    for (const auto& row : rows)
        connect(row.first, &GroupRow::deleteTouched, this,
                [this, group = row.second] { askDelete(group); });
    shell()->onLinkChange(this, [this](bool) { late_.clear(); });
}

void UserGroupInfo::windowInEvent() {
    FormScreen::windowInEvent();
    deleting_ = kNone;
    UpdateUserCount(shell()->menuRecord().users);
    askCounts();
}

void UserGroupInfo::askCounts() {
    shell()->SendCommand(command::AskUserCounts, 0, 0);
}

void UserGroupInfo::UpdateUserCount(const UserCounts& counts) {
    ui_->allRow->setCount(counts.all, kMostUsers);
    ui_->generalRow->setCount(counts.general, counts.all);
    ui_->inOutRow->setCount(counts.inOut, counts.all);
    ui_->faceOnlyRow->setCount(counts.faceOnly, counts.all);
    ui_->adminRow->setCount(counts.admin, counts.all);
    ui_->visitorRow->setCount(counts.visitor, counts.all);
}

void UserGroupInfo::askDelete(int group) {
    if (!request_.isWaiting())
        popup_.ask(
            kAsk + group, [this, group] { deleteGroup(group); }, {}, {}, ScreenPopup::kSeconds);
}

void UserGroupInfo::deleteGroup(int group) {
    if (!request_.send(command::DeleteUserGroup, static_cast<std::uint8_t>(group),
                       command::ordered::AtTerminal, {}, {command::UserGroupDeleted},
                       kAnswerTime)) {
        ShowPopup(kNoConnection, ScreenPopup::kSeconds);
        return;
    }
    deleting_ = group;
    late_.remove(group);
    // It may outlast the time of the menu, and the service is to hear of its end.
    shell()->setChangeWindowFlag(false);
    popup_.wait(kDeleting);
}

void UserGroupInfo::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::UserCountsAnswer) {
        if (const auto counts = message.record<UserCounts>())
            UpdateUserCount(*counts);
    } else if (message.command == command::UserGroupDeleted) {
        ShowAllDeleteResult(message.p1 == command::answer::Done, message.p2, message.payload);
    }
}

void UserGroupInfo::ShowAllDeleteResult(bool ok, unsigned char group, const char*) {
    if (!request_.isWaiting() || group != deleting_) {
        // One that was given up, or somebody else's order.
        if (late_.remove(group) && ok)
            tellService(group);
        if (isVisible())
            askCounts();
        return;
    }
    request_.cancel();
    shell()->setChangeWindowFlag(true);
    deleting_ = kNone;
    if (!ok) {
        ShowPopup(kFailed, ScreenPopup::kSeconds);
        askCounts();
        return;
    }
    tellService(group);
    popup_.showThen(kDeleted + group, [] { shell()->changeWindow(screen_title::kEnrolMenu); });
    askCounts();
}

void UserGroupInfo::tellService(int group) {
    if (group != user_group::InOut)
        shell()->reportGroupDeleted(group);
}

void UserGroupInfo::ShowPopup(int code, int seconds) {
    if (!popup_.show(code, seconds))
        popup_.wait(code);
}
