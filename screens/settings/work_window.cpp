#include "screens/settings/work_window.h"

#include <iterator>

#include "link/record_values.h"
#include "screens/settings/time_range.h"
#include "ui_work_window.h"

namespace {

constexpr int kPopupOverlap = 6;
constexpr int kPopupSaving = 20;

constexpr auto Error = DialogForm::Icon::Error;
constexpr auto Info = DialogForm::Icon::Info;

/// By number, from kFirstOwnPopup on.
constexpr PopupText kPopups[] = {
    {"ListItem_DoorOpentimeExceededInputRange", Error},
    {"ListItem_DoorClosetimeExceededInputRange", Error},
    {"ListItem_WeekdayWorkTimeExceededInputRange", Error},
    {"ListItem_WeekdayLeaveTimeExceededInputRange", Error},
    {"ListItem_SaturdayworkTimeExceededInputRange", Error},
    {"ListItem_SaturdayLeaveTimeExceededInputRange", Error},
    {"ListItem_CheckInputRangeDoorOpenTime", Error},
    {"ListItem_CheckInputRangeDoorCloseTime", Error},
    {"ListItem_CheckInputRangeWeekdayWorkingHours", Error},
    {"ListItem_CheckInputRangeWeekdayLeave", Error},
    {"ListItem_CheckInputRangeSaturdayWorkingHours", Error},
    {"ListItem_CheckInputRangeSaturdayLeave", Error},
    {"ListItem_SavingConfiguring", Info},
};
static_assert(OperationSettingsForm::kFirstOwnPopup + std::size(kPopups) - 1 == kPopupSaving);

}  // namespace

workWindow::workWindow(QWidget* parent, const QString& title)
    : OperationSettingsForm(parent, title, kPopups) {}

workWindow::~workWindow() = default;

void workWindow::createForm() {
    ui_ = std::make_unique<Ui::workWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar, ui_->list,
                {{ui_->forcedOpenTime, &OperationBlock::forcedOpen, 8, 14},
                 {ui_->forcedCloseTime, &OperationBlock::forcedClose, 9, 15},
                 {ui_->weekdayInTime, &OperationBlock::weekdayIn, 10, 16},
                 {ui_->weekdayOutTime, &OperationBlock::weekdayOut, 11, 17},
                 {ui_->saturdayInTime, &OperationBlock::saturdayIn, 12, 18},
                 {ui_->saturdayOutTime, &OperationBlock::saturdayOut, 13, 19}});
    connect(ui_->modeCombo, &Combo::currentIndexChanged, this, &workWindow::modeSetSlot);
    for (CheckBox* box : {ui_->forcedOpenBox, ui_->forcedCloseBox})
        connect(box, &CheckBox::toggled, this, &workWindow::doorUseTouchSlot);
    connect(ui_->recogFailToggle, &Toggle::currentIndexChanged, this,
            &workWindow::recogFailSaveSlot);
}

void workWindow::showRecord() {
    const OperationBlock shown = operation();
    choose(ui_->modeCombo, shown.attendanceMode);
    ui_->simpleAccessToggle->setCurrentIndex(shown.saveSimpleAccess != 0 ? 0 : 1);
    choose(ui_->doorOpenCombo, shown.doorOpenSetting);
    ui_->doorOpenTime->setValue(shown.doorOpenTime);
    ui_->forcedOpenBox->setChecked(shown.forcedOpenOff == 0);
    ui_->forcedCloseBox->setChecked(shown.forcedCloseOff == 0);
    choose(ui_->holidayCombo, shown.holidayRule);
    ui_->recogFailToggle->setCurrentIndex(shown.saveRecognitionFail != 0 ? 0 : 1);
    modeSetSlot(ui_->modeCombo->currentIndex());
    doorUseTouchSlot();
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
    ui_->forcedOpenTime->setEnabled(ui_->forcedOpenBox->isChecked());
    ui_->forcedCloseTime->setEnabled(ui_->forcedCloseBox->isChecked());
    operation().forcedOpenOff = ui_->forcedOpenBox->isChecked() ? 0 : 1;
    operation().forcedCloseOff = ui_->forcedCloseBox->isChecked() ? 0 : 1;
}

void workWindow::recogFailSaveSlot(int choice) {
    operation().saveRecognitionFail = choice == 0 ? 1 : 0;
}

void workWindow::saveButtonTouch() {
    if (!readTimes())
        return;
    OperationBlock& edited = operation();
    if (TimeRange::CheckTime(edited.weekdayIn, edited.weekdayOut) == 0 ||
        TimeRange::CheckTime(edited.saturdayIn, edited.saturdayOut) == 0) {
        ShowPopup(kPopupOverlap, kPopupSeconds);
        return;
    }
    edited.attendanceMode = chosen(ui_->modeCombo);
    edited.saveSimpleAccess = ui_->simpleAccessToggle->currentIndex() == 0 ? 1 : 0;
    edited.doorOpenSetting = chosen(ui_->doorOpenCombo);
    edited.doorOpenTime = static_cast<std::uint8_t>(ui_->doorOpenTime->value());
    edited.holidayRule = chosen(ui_->holidayCombo);
    save();
    ShowPopup(kPopupSaving, kPopupSeconds);
}
