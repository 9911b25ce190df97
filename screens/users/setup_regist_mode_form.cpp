#include "screens/users/setup_regist_mode_form.h"

#include "link/command_code.h"

namespace {

constexpr ScreenText kTexts[] = {
    {1, "Dialog_Saving", ScreenText::Wait},
    {2, "Dialog_SaveComplate", ScreenText::Pass, nullptr, "Dialog_ButtonConfirm"},
    {SettingsForm::Saving, "Dialog_Saving", ScreenText::Wait},
    {SettingsForm::Saved, "Dialog_SaveComplate", ScreenText::Pass, nullptr, "Dialog_ButtonConfirm"},
};

}  // namespace

void SetupRegistModeForm::built() {
    popup().add(kTexts);
    slice(&_gui_menu_::registration, command::SaveRegistrationMode, command::RegistrationModeSaved);
    bind(ui_->modeToggle, &RegistrationBlock::on, kInverted);
    bindFromOne(ui_->methodToggle, &RegistrationBlock::authMethod);
    bind(ui_->autoIdToggle, &RegistrationBlock::autoId, kInverted);
    bind(ui_->glassesToggle, &RegistrationBlock::wearGlasses, kInverted);
    bind(ui_->zoneToggle, &RegistrationBlock::syncAutoZone, kInverted);
    bind(ui_->retainToggle, &RegistrationBlock::retainUserData, kInverted);
    bindFromOne(ui_->levelToggle, &RegistrationBlock::userLevel);
    connect(ui_->modeToggle, &Choice::currentIndexChanged, this, &SetupRegistModeForm::showRows);
}

void SetupRegistModeForm::bindFromOne(Choice* choice, std::uint8_t RegistrationBlock::*field) {
    bindOther(
        choice,
        [=](const _gui_menu_& record) {
            choice->setCurrentIndex(record.registration.*field == 2 ? 1 : 0);
        },
        [=](_gui_menu_& record) {
            record.registration.*field = static_cast<std::uint8_t>(choice->currentIndex() + 1);
            return 0;
        });
    connect(choice, &Choice::currentIndexChanged, this, [this, choice] { touched(choice); });
}

bool SetupRegistModeForm::validate(_gui_menu_& edited) {
    // Whoever enrols at the live view is given a number and asked for glasses.
    if (edited.registration.on == 1)
        edited.registration.autoId = edited.registration.wearGlasses = 1;
    return true;
}

void SetupRegistModeForm::showRows() {
    const bool on = ui_->modeToggle->currentIndex() == 0;
    for (ListRow* row : {ui_->methodRow, ui_->autoIdRow, ui_->glassesRow, ui_->zoneRow,
                         ui_->retainRow, ui_->levelRow})
        row->setVisible(on);
}
