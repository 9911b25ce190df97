#include <QByteArray>
#include <cstring>

#include "app/screen_titles.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "screens/users/user_record.h"
#include "screens/users/user_search_step.h"
#include "sim/common/portrait.h"
#include "tools/gallery/area_states.h"
#include "tools/gallery/stage.h"

namespace {

namespace search = command::search;
namespace asks = command::asks;

_gui_user_ somebody(const char* name = "김서연") {
    _gui_user_ user{};
    setFieldText(user.userId, QStringLiteral("01023456789"));
    setFieldText(user.customerId, QStringLiteral("01023456789"));
    setFieldText(user.name, QString::fromUtf8(name));
    setFieldText(user.registrationTime, QStringLiteral("2026-03-02 09:00:00"));
    user.authMethod = AuthMethod::FaceOrCard;
    user.level = UserLevel::General;
    user.facePresent = 1;
    return user;
}

/// Shows what a search has found.
void found(Stage& stage, const _gui_user_& user) {
    const QByteArray record(reinterpret_cast<const char*>(&user), sizeof user);
    stage.window().changeWindow(screen_title::kUserMenu);
    stage.window().changeWindow(
        screen_title::kUserInfo,
        QVariant::fromValue(UserSearchOutcome{command::answer::Done, search::ById, record}));
}

void person(Stage& stage) {
    portrait::save(stage.root().path("/mnt/data"), QStringLiteral("01023456789"), 0);
    found(stage, somebody());
}

template <unsigned char result, unsigned char type>
void nobody(Stage& stage) {
    stage.receive(command::UserDeleted, result, type);
}

/// What becomes of a save that takes the card away.
void destructive(Stage& stage) {
    _gui_user_ user = somebody();
    user.cardPresent = 1;
    found(stage, user);
    stage.touch(QStringLiteral("methodCombo"));
    stage.touch(QStringLiteral("item1"));
    stage.touch(QStringLiteral("forwardButton"));
}

void unstored(Stage& stage) {
    destructive(stage);
    stage.touch(QStringLiteral("dialogOkButton"));
    stage.receive(command::UserDeleteResult, command::answer::Done);
    stage.receive(command::UserChanged, command::answer::Failed);
    UnstoredUser::forget(*UnstoredUser::kept());
}

void counts(Stage& stage) {
    stage.receiveRecord(command::UserCountsAnswer, UserCounts{9999, 8412, 5, 1873, 96, 1582, 214});
}

template <int group>
void askGroup(Stage& stage) {
    static constexpr const char* kRows[] = {"GeneralUsers", "AdminUsers", "InOutUsers", "AllUsers",
                                            "FaceOnlyUsers"};
    counts(stage);
    stage.touch(QLatin1String("delete_Button_") + QLatin1String(kRows[group]));
}

template <int group, int result>
void groupDeleted(Stage& stage) {
    askGroup<group>(stage);
    stage.touch(QStringLiteral("dialogOkButton"));
    stage.receive(command::UserGroupDeleted, result, group);
}

void uploading(Stage& stage) {
    counts(stage);
    stage.touch(QStringLiteral("allUserButton"));
    stage.receiveRecord(command::UserCountsAnswer, UserCounts{9999, 8412, 5, 1873, 96, 1582, 3600});
}

template <unsigned char result>
void uploaded(Stage& stage) {
    uploading(stage);
    stage.receive(command::UsersUploaded, result);
}

void typeNumber(Stage& stage, const char* digits) {
    for (const char* digit = digits; *digit != '\0'; ++digit)
        stage.touch(QStringLiteral("key_") + QLatin1Char(*digit));
    stage.touch(QStringLiteral("forwardButton"));
}

void registration(Stage& stage) {
    _gui_menu_ settings = stage.settings();
    settings.registration = {1, 2, 1, 1, 0, 0, 2};
    stage.changeSettings(settings);
}

constexpr AreaState kStates[] = {
    {"userSearch_faceWindow", "link-lost", [](Stage& stage) { stage.loseController(); }},
    {"userSearch_idWindow", "ten-digits", [](Stage& stage) { typeNumber(stage, "0102345678"); }},
    {"userSearch_idWindow", "searching", [](Stage& stage) { typeNumber(stage, "01023456789"); }},
    {"userSearch_InfoWindow", "person", person},
    {"userSearch_InfoWindow", "longest-name",
     [](Stage& stage) { found(stage, somebody("WWWWWWWWWWWWWWW WWWWWWWWWWWWWWWW")); }},
    {"userSearch_InfoWindow", "longest-han",
     [](Stage& stage) {
         found(stage, somebody("鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹鷹"));
     }},
    {"userSearch_InfoWindow", "visitor",
     [](Stage& stage) {
         _gui_user_ user = somebody("中村 蓮");
         user.level = UserLevel::Visitor;
         user.origin = UserOrigin::Kiosk;
         setFieldText(user.destination, QStringLiteral("7F 회의실"));
         found(stage, user);
     }},
    {"userSearch_InfoWindow", "keypad",
     [](Stage& stage) {
         person(stage);
         stage.touch(QStringLiteral("numberField"));
     }},
    {"userSearch_InfoWindow", "unregistered-card", nobody<asks::NotRegistered, asks::ForCard>},
    {"userSearch_InfoWindow", "unregistered-face", nobody<asks::NotRegistered, asks::ForFace>},
    {"userSearch_InfoWindow", "unregistered-number", nobody<asks::NotRegistered, asks::ForId>},
    {"userSearch_InfoWindow", "timed-out", nobody<asks::NothingTagged, asks::ForCard>},
    {"userSearch_InfoWindow", "before-delete",
     [](Stage& stage) {
         person(stage);
         stage.touch(QStringLiteral("deleteButton"));
     }},
    {"userSearch_InfoWindow", "deleted",
     [](Stage& stage) { stage.receive(command::UserDeleteResult, 0); }},
    {"userSearch_InfoWindow", "not-deleted",
     [](Stage& stage) { stage.receive(command::UserDeleteResult, 1); }},
    {"userSearch_InfoWindow", "before-destructive", destructive},
    {"userSearch_InfoWindow", "saving",
     [](Stage& stage) {
         person(stage);
         stage.touch(QStringLiteral("forwardButton"));
     }},
    {"userSearch_InfoWindow", "changed",
     [](Stage& stage) {
         person(stage);
         stage.touch(QStringLiteral("forwardButton"));
         stage.receive(command::UserChanged, command::answer::Done);
     }},
    {"userSearch_InfoWindow", "not-changed",
     [](Stage& stage) {
         person(stage);
         stage.touch(QStringLiteral("forwardButton"));
         stage.receive(command::UserChanged, command::answer::Failed);
     }},
    {"userSearch_InfoWindow", "unstored", unstored},
    {"userGroupInfoWindow", "full", counts},
    {"userGroupInfoWindow", "before-general", askGroup<0>},
    {"userGroupInfoWindow", "before-administrators", askGroup<1>},
    {"userGroupInfoWindow", "before-in-out", askGroup<2>},
    {"userGroupInfoWindow", "before-all", askGroup<3>},
    {"userGroupInfoWindow", "before-face-only", askGroup<4>},
    {"userGroupInfoWindow", "general-deleted", groupDeleted<0, 0>},
    {"userGroupInfoWindow", "administrators-deleted", groupDeleted<1, 0>},
    {"userGroupInfoWindow", "in-out-deleted", groupDeleted<2, 0>},
    {"userGroupInfoWindow", "all-deleted", groupDeleted<3, 0>},
    {"userGroupInfoWindow", "face-only-deleted", groupDeleted<4, 0>},
    {"userGroupInfoWindow", "not-deleted", groupDeleted<0, 1>},
    {"userInfo_uploadWindow", "counts", counts},
    {"userInfo_uploadWindow", "running", uploading},
    {"userInfo_uploadWindow", "complete", uploaded<0>},
    {"userInfo_uploadWindow", "cancel-first", uploaded<1>},
    {"userInfo_uploadWindow", "no-connection", uploaded<2>},
    {"userInfo_uploadWindow", "exceeded", uploaded<3>},
    {"userInfo_uploadWindow", "cancelled", uploaded<4>},
    {"userInfo_uploadWindow", "wireless", uploaded<15>},
    {"setupRegistModeWindow", "on", registration},
    {"setupRegistModeWindow", "saved",
     [](Stage& stage) {
         registration(stage);
         stage.touch(QStringLiteral("forwardButton"));
         stage.receive(command::RegistrationModeSaved, command::answer::Done);
     }},
    {"inputSubWindow", "ten-digits", [](Stage& stage) { typeNumber(stage, "0102345678"); }},
    {"inputSubWindow", "unregistered",
     [](Stage& stage) {
         typeNumber(stage, "01023456789");
         stage.receive(command::NumberChecked, command::answer::Failed);
     }},
};

}  // namespace

AreaStates peopleStates() {
    return kStates;
}
