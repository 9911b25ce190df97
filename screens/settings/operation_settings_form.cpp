#include "screens/settings/operation_settings_form.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "screens/settings/time_range.h"
#include "ui/check_box.h"
#include "ui/input_field.h"
#include "ui/list_row.h"

namespace {

constexpr auto Error = ScreenText::Error;

/// The popups of both screens.
constexpr ScreenText kPopups[] = {
    {1, "ListItem_SetATime", Error},
    {2, "ListItem_SetATime", Error},
    {3, "ListItem_SetATime", Error},
    {4, "ListItem_SetATime", Error},
    {5, "ListItem_StartimeEndtimeSame", Error},
    {6, "ListItem_IntimeOuttimeSame", Error},
    {7, "ListItem_ConfigurationComplete", ScreenText::Pass},
};

OperationSettings settingsOf(const OperationBlock& block) {
    return {
        block.attendanceMode,  block.lunchOff,     block.saveSimpleAccess,    block.supperOff,
        block.doorOpenSetting, block.doorOpenTime, block.forcedOpenOff,       block.forcedCloseOff,
        block.forcedOpen,      block.forcedClose,  block.saveRecognitionFail, block.mealCountView};
}

OperationTimes timesOf(const OperationBlock& block) {
    return {block.weekdayIn, block.weekdayOut, block.saturdayIn, block.saturdayOut,
            block.holidayRule};
}

}  // namespace

OperationSettingsForm::OperationSettingsForm(QWidget* parent, const QString& title)
    : SettingsForm(parent, title) {
    popup().add(kPopups);
    // Two frames carry the slice; only the second one is answered.
    slice(&_gui_menu_::operation, command::SaveOperationSettings, command::OperationSettingsSaved);
}

void OperationSettingsForm::windowInEvent() {
    SettingsForm::windowInEvent();
    leftForOtherOperation();
}

void OperationSettingsForm::settingsChanged(const SettingsChange& change) {
    if (!leftForOtherOperation())
        SettingsForm::settingsChanged(change);
}

bool OperationSettingsForm::leftForOtherOperation() {
    if (isFor(shell()->menuRecord().setup.operation))
        return false;
    shell()->changeWindow(backTarget());
    shell()->showPopupText(QStringLiteral("Info_OtherOperation"));
    return true;
}

void OperationSettingsForm::bind(InputField* input, _byte4_time_se_ OperationBlock::*range,
                                 int outOfRange, int malformed) {
    bindInput(
        input,
        [=](const _gui_menu_& record) {
            input->setText(TimeRange::betweenTimeText(record.operation.*range));
        },
        [=](_gui_menu_& record) {
            switch (TimeRange::getBetweenTime(input->text(), &(record.operation.*range))) {
                case TimeRange::OutOfRange:
                    return outOfRange;
                case TimeRange::Malformed:
                    return malformed;
                case TimeRange::Valid:
                    break;
            }
            return 0;
        });
}

void OperationSettingsForm::useWhileTicked(const CheckBox* box) {
    const auto* row = static_cast<const ListRow*>(box->parentWidget());
    row->control()->setEnabled(box->isChecked());
}

bool OperationSettingsForm::sendSlice(const _gui_menu_& edited) {
    return request().sendRecord(command::SaveOperationSettings, command::save::Settings, 0,
                                settingsOf(edited.operation), {command::OperationSettingsSaved},
                                kAnswerTime) &&
           setTime();
}

bool OperationSettingsForm::setTime() {
    return shell()->SendRecord(command::SaveOperationTimes, command::save::Settings, 0,
                               timesOf(shell()->menuRecord().operation));
}
