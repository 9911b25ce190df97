#pragma once

#include <QString>
#include <optional>

#include "link/command_parameters.h"
#include "link/device_records.h"
#include "link/record_values.h"

/// What the operating modes are called and when they are in force.
namespace WorkState {

/// An attendance event.
struct Attendance {
    WorkMode mode;
    std::uint8_t key;  ///< first parameter of RecognitionKey; also in RecognitionResult
    const char* word;  ///< script key of its name
    const char* done;  ///< script key of the confirmation
    const char* icon;  ///< picture of 40 pixels
};
/// In the order in which they are offered: in, out, break, return.
constexpr Attendance kAttendance[] = {
    {WorkMode::In, command::key::In, "Info_WorkIn", "Info_Authenticated_Complet_In",
     "in_40_accent.png"},
    {WorkMode::Out, command::key::Out, "Info_WorkOut", "Info_Authenticated_Complet_Out",
     "out_40_accent.png"},
    {WorkMode::Break, command::key::Break, "Info_WorkBreak", "Info_Authenticated_Complet_Break",
     "break_40_accent.png"},
    {WorkMode::Return, command::key::Return, "Info_WorkReturn", "Info_Authenticated_Complet_Return",
     "return_40_accent.png"},
};
/// The event of a mode or of a key; null when there is none.
const Attendance* attendanceOf(WorkMode mode);
const Attendance* attendanceOfKey(std::uint8_t key);

/// The script key of a meal's name; null for a mode that is no meal.
const char* mealName(WorkMode mode);

/// Whether the terminal counts meals.
bool isMealOperation(const _gui_menu_& settings);

/// The mode that the screens show for the one @p reported: the controller's fourth status stands
/// for return on a terminal that records nothing else.
WorkMode shown(WorkMode reported, const _gui_menu_& settings);

/// What the live view's banner says.
struct Banner {
    const char* picture;           ///< background in /zel1/image; null for the plain one
    const Attendance* attendance;  ///< the event, null with meals
    const char* meal;              ///< script key of the meal, null outside of every period
    _byte4_time_se_ range;
};
/// The banner of @p mode on day @p dayOfWeek (1 Monday .. 7 Sunday); nothing for a mode that has
/// none of its own.
std::optional<Banner> banner(WorkMode mode, const _gui_menu_& settings, int dayOfWeek);

/// "08:00 ~ 09:30"
QString rangeText(const _byte4_time_se_& range);

}  // namespace WorkState
