#include "screens/settings/food_window.h"

#include "link/record_values.h"
#include "screens/settings/time_range.h"

namespace {

constexpr int kDefaultLampTime = 3;  // seconds
constexpr int kPopupOverlap = 17;

constexpr auto Error = ScreenText::Error;

constexpr ScreenText kPopups[] = {
    {8, "ListItem_BrackfastExceededInputRange", Error},
    {9, "ListItem_LunchExceededInputRange", Error},
    {10, "ListItem_DinnerExceededInputRange", Error},
    {11, "ListItem_SupperExceededInputRange", Error},
    {12, "ListItem_BrackfastInputRange", Error},
    {13, "ListItem_LunchInputRange", Error},
    {14, "ListItem_DinnerInputRange", Error},
    {15, "ListItem_SupperInputRange", Error},
    {16, "ListItem_SavingConfiguring", ScreenText::Info},
    {kPopupOverlap, "ListItem_MealtimeOverlap", Error},
};

}  // namespace

FoodWindow::FoodWindow(QWidget* parent, const QString& title) : FormScreen(parent, title) {
    setObjectName(QStringLiteral("FoodWindow"));
}

void FoodWindow::built() {
    popup().add(kPopups);
    bind(ui_->breakfastBox, &OperationBlock::attendanceMode, kInverted);
    bind(ui_->lunchBox, &OperationBlock::lunchOff, kInverted);
    bind(ui_->dinnerBox, &OperationBlock::saveSimpleAccess, kInverted);
    bind(ui_->supperBox, &OperationBlock::supperOff, kInverted);
    bind(ui_->breakfastTime, &OperationBlock::weekdayIn, 8, 12);
    bind(ui_->lunchTime, &OperationBlock::weekdayOut, 9, 13);
    bind(ui_->dinnerTime, &OperationBlock::saturdayIn, 10, 14);
    bind(ui_->supperTime, &OperationBlock::saturdayOut, 11, 15);
    bind(ui_->duplicateUseCombo, &OperationBlock::doorOpenSetting);
    bind(ui_->lampTime, &OperationBlock::doorOpenTime, kDefaultLampTime);
    bind(ui_->lampConditionToggle, &OperationBlock::forcedOpenOff);
    bind(ui_->mealCountViewToggle, &OperationBlock::mealCountView);
    bind(ui_->recogFailToggle, &OperationBlock::saveRecognitionFail, kInverted);

    for (CheckBox* box : {ui_->breakfastBox, ui_->lunchBox, ui_->dinnerBox, ui_->supperBox})
        connect(box, &CheckBox::toggled, this, &FoodWindow::foodUseTouch);
    foodUseTouch();
}

bool FoodWindow::isFor(std::uint8_t operation) const {
    return operation == Operation::Meals;
}

void FoodWindow::foodUseTouch() {
    for (const CheckBox* box : {ui_->breakfastBox, ui_->lunchBox, ui_->dinnerBox, ui_->supperBox})
        useWhileTicked(box);
}

bool FoodWindow::validate(_gui_menu_& edited) {
    // Any two of the periods, used or not, must stand beside each other.
    const struct {
        _byte4_time_se_ period;
        QWidget* field;
    } meals[] = {{edited.operation.weekdayIn, ui_->breakfastTime},
                 {edited.operation.weekdayOut, ui_->lunchTime},
                 {edited.operation.saturdayIn, ui_->dinnerTime},
                 {edited.operation.saturdayOut, ui_->supperTime}};
    for (const auto* one = std::begin(meals); one != std::end(meals); ++one) {
        for (const auto* other = one + 1; other != std::end(meals); ++other) {
            if (TimeRange::CheckTime(one->period, other->period) == 0) {
                fault(kPopupOverlap, {one->field, other->field});
                return false;
            }
        }
    }
    return true;
}
