#include "screens/recognize/work_state.h"

namespace {

struct Meal {
    const char* name;
    const char* picture;
    _byte4_time_se_ OperationBlock::*range;
};
// From breakfast on. Supper has no picture of its own.
constexpr Meal kMeals[] = {
    {"ListItem_Breakfast", "food_noti_breakfast.png", &OperationBlock::weekdayIn},
    {"ListItem_Lunch", "food_noti_lunch.png", &OperationBlock::weekdayOut},
    {"ListItem_Dinner", "food_noti_dinner.png", &OperationBlock::saturdayIn},
    {"ListItem_Supper", "food_noti_dinner.png", &OperationBlock::saturdayOut},
};

const Meal* mealOf(WorkMode mode) {
    return mode >= WorkMode::Breakfast && mode <= WorkMode::Supper
               ? &kMeals[static_cast<int>(mode) - static_cast<int>(WorkMode::Breakfast)]
               : nullptr;
}

/// Two ranges are kept for arriving and two for leaving; a break is a way of leaving and a return
/// one of arriving, as for the door.
const _byte4_time_se_& attendanceRange(WorkMode mode, const OperationBlock& operation,
                                       bool weekend) {
    if (mode == WorkMode::In || mode == WorkMode::Return)
        return weekend ? operation.saturdayIn : operation.weekdayIn;
    return weekend ? operation.saturdayOut : operation.weekdayOut;
}

}  // namespace

namespace WorkState {

const Attendance* attendanceOf(WorkMode mode) {
    for (const Attendance& event : kAttendance) {
        if (event.mode == mode)
            return &event;
    }
    return nullptr;
}

const Attendance* attendanceOfKey(std::uint8_t key) {
    for (const Attendance& event : kAttendance) {
        if (event.key == key)
            return &event;
    }
    return nullptr;
}

const char* mealName(WorkMode mode) {
    const Meal* meal = mealOf(mode);
    return meal != nullptr ? meal->name : nullptr;
}

bool isMealOperation(const _gui_menu_& settings) {
    return settings.setup.operation == Operation::Meals;
}

WorkMode shown(WorkMode reported, const _gui_menu_& settings) {
    const bool returnOnly = settings.setup.operation == Operation::Attendance &&
                            settings.operation.attendanceMode == AttendanceRule::Return;
    return reported == WorkMode::Reserved && returnOnly ? WorkMode::Return : reported;
}

std::optional<Banner> banner(WorkMode mode, const _gui_menu_& settings, int dayOfWeek) {
    if (const Meal* meal = mealOf(mode))
        return Banner{meal->picture, nullptr, meal->name, settings.operation.*meal->range};
    if (const Attendance* event = attendanceOf(mode))
        return Banner{nullptr, event, nullptr,
                      attendanceRange(mode, settings.operation, dayOfWeek > Qt::Friday)};
    if (mode == WorkMode::AccessOnly && isMealOperation(settings))
        return Banner{"food_noti_closed.png", nullptr, nullptr, {}};
    return std::nullopt;
}

QString rangeText(const _byte4_time_se_& range) {
    return QString::asprintf("%02d:%02d ~ %02d:%02d", range.startHour, range.startMinute,
                             range.endHour, range.endMinute);
}

}  // namespace WorkState
