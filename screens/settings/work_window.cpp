#include "screens/settings/work_window.h"

#include "link/record_values.h"
#include "screens/settings/time_range.h"

namespace {

constexpr int kPopupOverlap = 6;

constexpr auto Error = ScreenText::Error;

constexpr ScreenText kPopups[] = {
    {8, "ListItem_DoorOpentimeExceededInputRange", Error},
    {9, "ListItem_DoorClosetimeExceededInputRange", Error},
    {10, "ListItem_WeekdayWorkTimeExceededInputRange", Error},
    {11, "ListItem_WeekdayLeaveTimeExceededInputRange", Error},
    {12, "ListItem_SaturdayworkTimeExceededInputRange", Error},
    {13, "ListItem_SaturdayLeaveTimeExceededInputRange", Error},
    {14, "ListItem_CheckInputRangeDoorOpenTime", Error},
    {15, "ListItem_CheckInputRangeDoorCloseTime", Error},
    {16, "ListItem_CheckInputRangeWeekdayWorkingHours", Error},
    {17, "ListItem_CheckInputRangeWeekdayLeave", Error},
    {18, "ListItem_CheckInputRangeSaturdayWorkingHours", Error},
    {19, "ListItem_CheckInputRangeSaturdayLeave", Error},
    {20, "ListItem_SavingConfiguring", ScreenText::Info},
};

}  // namespace

void workWindow::built() {
    popup().add(kPopups);
    bind(ui_->modeCombo, &OperationBlock::attendanceMode);
    bind(ui_->simpleAccessToggle, &OperationBlock::saveSimpleAccess, kInverted);
    bind(ui_->doorOpenCombo, &OperationBlock::doorOpenSetting);
    bind(ui_->doorOpenTime, &OperationBlock::doorOpenTime);
    bind(ui_->forcedOpenBox, &OperationBlock::forcedOpenOff, kInverted);
    bind(ui_->forcedCloseBox, &OperationBlock::forcedCloseOff, kInverted);
    bind(ui_->forcedOpenTime, &OperationBlock::forcedOpen, 8, 14);
    bind(ui_->forcedCloseTime, &OperationBlock::forcedClose, 9, 15);
    bind(ui_->weekdayInTime, &OperationBlock::weekdayIn, 10, 16);
    bind(ui_->weekdayOutTime, &OperationBlock::weekdayOut, 11, 17);
    bind(ui_->saturdayInTime, &OperationBlock::saturdayIn, 12, 18);
    bind(ui_->saturdayOutTime, &OperationBlock::saturdayOut, 13, 19);
    bind(ui_->holidayCombo, &OperationBlock::holidayRule);
    bind(ui_->recogFailToggle, &OperationBlock::saveRecognitionFail, kInverted);

    connect(ui_->modeCombo, &Combo::currentIndexChanged, this, &workWindow::modeSetSlot);
    for (CheckBox* box : {ui_->forcedOpenBox, ui_->forcedCloseBox})
        connect(box, &CheckBox::toggled, this, &workWindow::doorUseTouchSlot);
    modeSetSlot(ui_->modeCombo->currentIndex());
    doorUseTouchSlot();
}

bool workWindow::isFor(std::uint8_t operation) const {
    return operation != Operation::Meals;
}

void workWindow::modeSetSlot(int mode) {
    const bool byTime = mode == AttendanceRule::ByTime;
    const std::initializer_list<QWidget*> times = {ui_->weekdayInTime, ui_->weekdayOutTime,
                                                   ui_->saturdayInTime, ui_->saturdayOutTime,
                                                   ui_->holidayCombo};
    for (QWidget* widget : times)
        widget->setEnabled(byTime);
}

void workWindow::doorUseTouchSlot() {
    useWhileTicked(ui_->forcedOpenBox);
    useWhileTicked(ui_->forcedCloseBox);
}

void workWindow::recogFailSaveSlot(int choice) {
    ui_->recogFailToggle->setCurrentIndex(choice);
}

bool workWindow::validate(_gui_menu_& edited) {
    const OperationBlock& times = edited.operation;
    if (TimeRange::CheckTime(times.weekdayIn, times.weekdayOut) == 0) {
        fault(kPopupOverlap, {ui_->weekdayInTime, ui_->weekdayOutTime});
        return false;
    }
    if (TimeRange::CheckTime(times.saturdayIn, times.saturdayOut) == 0) {
        fault(kPopupOverlap, {ui_->saturdayInTime, ui_->saturdayOutTime});
        return false;
    }
    return true;
}
