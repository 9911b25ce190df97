#include "screens/settings/food_window.h"

#include <iterator>

#include "screens/settings/time_range.h"
#include "ui_food_window.h"

namespace {

constexpr int kDefaultLampTime = 3;  // seconds
constexpr int kPopupSaving = 16;
constexpr int kPopupOverlap = 17;

constexpr auto Error = DialogForm::Icon::Error;
constexpr auto Info = DialogForm::Icon::Info;

/// By number, from kFirstOwnPopup on.
constexpr PopupText kPopups[] = {
    {"ListItem_BrackfastExceededInputRange", Error},
    {"ListItem_LunchExceededInputRange", Error},
    {"ListItem_DinnerExceededInputRange", Error},
    {"ListItem_SupperExceededInputRange", Error},
    {"ListItem_BrackfastInputRange", Error},
    {"ListItem_LunchInputRange", Error},
    {"ListItem_DinnerInputRange", Error},
    {"ListItem_SupperInputRange", Error},
    {"ListItem_SavingConfiguring", Info},
    {"ListItem_MealtimeOverlap", Error},
};
static_assert(OperationSettingsForm::kFirstOwnPopup + std::size(kPopups) - 1 == kPopupOverlap);

/// Any two of the periods, used or not, must stand beside each other.
bool overlap(const OperationBlock& block) {
    const _byte4_time_se_ periods[] = {block.weekdayIn, block.weekdayOut, block.saturdayIn,
                                       block.saturdayOut};
    for (auto one = std::begin(periods); one != std::end(periods); ++one) {
        for (auto other = one + 1; other != std::end(periods); ++other) {
            if (TimeRange::CheckTime(*one, *other) == 0)
                return true;
        }
    }
    return false;
}

}  // namespace

FoodWindow::FoodWindow(QWidget* parent, const QString& title)
    : OperationSettingsForm(parent, title, kPopups) {
    setObjectName(QStringLiteral("FoodWindow"));
}

FoodWindow::~FoodWindow() = default;

void FoodWindow::createForm() {
    ui_ = std::make_unique<Ui::FoodWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar, ui_->list,
                {{ui_->breakfastTime, &OperationBlock::weekdayIn, 8, 12},
                 {ui_->lunchTime, &OperationBlock::weekdayOut, 9, 13},
                 {ui_->dinnerTime, &OperationBlock::saturdayIn, 10, 14},
                 {ui_->supperTime, &OperationBlock::saturdayOut, 11, 15}});
    for (CheckBox* box : {ui_->breakfastBox, ui_->lunchBox, ui_->dinnerBox, ui_->supperBox})
        connect(box, &CheckBox::toggled, this, &FoodWindow::foodUseTouch);
}

void FoodWindow::showRecord() {
    const OperationBlock shown = operation();
    ui_->breakfastBox->setChecked(shown.attendanceMode == 0);
    ui_->lunchBox->setChecked(shown.lunchOff == 0);
    ui_->dinnerBox->setChecked(shown.saveSimpleAccess == 0);
    ui_->supperBox->setChecked(shown.supperOff == 0);
    choose(ui_->duplicateUseCombo, shown.doorOpenSetting);
    ui_->lampTime->setValue(shown.doorOpenTime != 0 ? shown.doorOpenTime : kDefaultLampTime);
    ui_->lampConditionToggle->setCurrentIndex(shown.forcedOpenOff);
    ui_->mealCountViewToggle->setCurrentIndex(shown.mealCountView);
    ui_->recogFailToggle->setCurrentIndex(shown.saveRecognitionFail != 0 ? 0 : 1);
    foodUseTouch();
}

void FoodWindow::foodUseTouch() {
    const auto use = [](const CheckBox* box, QWidget* field, std::uint8_t& off) {
        field->setEnabled(box->isChecked());
        off = box->isChecked() ? 0 : 1;
    };
    OperationBlock& edited = operation();
    use(ui_->breakfastBox, ui_->breakfastTime, edited.attendanceMode);
    use(ui_->lunchBox, ui_->lunchTime, edited.lunchOff);
    use(ui_->dinnerBox, ui_->dinnerTime, edited.saveSimpleAccess);
    use(ui_->supperBox, ui_->supperTime, edited.supperOff);
}

void FoodWindow::saveButtonTouch() {
    if (!readTimes())
        return;
    OperationBlock& edited = operation();
    if (overlap(edited)) {
        ShowPopup(kPopupOverlap, kPopupSeconds);
        return;
    }
    edited.doorOpenSetting = chosen(ui_->duplicateUseCombo);
    edited.doorOpenTime = static_cast<std::uint8_t>(ui_->lampTime->value());
    edited.forcedOpenOff = ui_->lampConditionToggle->currentIndex() == 0 ? 0 : 1;
    edited.mealCountView = ui_->mealCountViewToggle->currentIndex() == 0 ? 0 : 1;
    edited.saveRecognitionFail = ui_->recogFailToggle->currentIndex() == 0 ? 1 : 0;
    save();
    ShowPopup(kPopupSaving, kPopupSeconds);
}
