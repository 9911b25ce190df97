#include "app/command_popups.h"

#include "link/command_code.h"

namespace {

using CommandPopups::Kind;

constexpr int kAnyOther = -1;

struct Row {
    int command;
    int p1;
    CommandPopups::Popup popup;
};

// The first row that fits counts.
constexpr Row kRows[] = {
    {command::EnrolmentRefused, 1, {Kind::Result, "Error_MaxUsersExcceeded", true}},
    {command::EnrolmentRefused, 2, {Kind::Result, "Error_EnrollingUsers", true}},
    {command::EnrolmentRefused, kAnyOther, {Kind::Result, "Error_NoResponse", true}},
    {command::UserDeleteResult, 0, {Kind::Result, "ListItem_UserDeleted", false}},
    {command::UserDeleteResult, kAnyOther, {Kind::Result, "ListItem_FailedDeleted", true}},
    {command::FirmwareUpdateAnswer,
     0,
     {Kind::Result, "ListItem_FwRestart", false, "upgradingWindow"}},
    {command::FirmwareUpdateAnswer,
     kAnyOther,
     {Kind::Result, "ListItem_FwUpgradeFailed", true, "stayWindow"}},
    {command::LogStoreReport, 0, {Kind::Result, "ListItem_LogStoreEmptied", false}},
    {command::LogStoreReport, 1, {Kind::Question, "ListItem_LogStoreNearlyFull", false}},
    {command::AccessEvent, 0, {Kind::Notice, "Info_AccessEvent", false}},
};

}  // namespace

namespace CommandPopups {

const Popup* find(int command, int p1) {
    for (const Row& row : kRows) {
        if (row.command == command && (row.p1 == p1 || row.p1 == kAnyOther))
            return &row.popup;
    }
    return nullptr;
}

}  // namespace CommandPopups
