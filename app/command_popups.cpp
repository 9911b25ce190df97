#include "app/command_popups.h"

#include "link/command_code.h"

namespace {

constexpr int kAnyOther = -1;

struct Row {
    int command;
    int p1;
    CommandPopups::Text text;
};

// The first row that fits counts.
constexpr Row kRows[] = {
    {command::EnrolmentRefused, 1, {"Error_MaxUsersExcceeded", true}},
    {command::EnrolmentRefused, 2, {"Error_EnrollingUsers", true}},
    {command::EnrolmentRefused, kAnyOther, {"Error_NoResponse", true}},
    {command::UserDeleteResult, 0, {"ListItem_UserDeleted", false}},
    {command::UserDeleteResult, kAnyOther, {"ListItem_FailedDeleted", true}},
    {command::FirmwareUpdateAnswer, 0, {"ListItem_FwRestart", false}},
    {command::FirmwareUpdateAnswer, kAnyOther, {"ListItem_FwUpgradeFailed", true}},
    {command::LogStoreReport, 0, {"ListItem_LogStoreEmptied", false}},
    {command::LogStoreReport, kAnyOther, {"ListItem_LogStoreNearlyFull", true}},
    {command::AccessEvent, kAnyOther, {"Info_AccessEvent", false}},
};

}  // namespace

namespace CommandPopups {

const Text* find(int command, int p1) {
    for (const Row& row : kRows) {
        if (row.command == command && (row.p1 == p1 || row.p1 == kAnyOther))
            return &row.text;
    }
    return nullptr;
}

}  // namespace CommandPopups
