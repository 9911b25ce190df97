#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_setup_regist_mode_form.h"

/// Settings of the registration mode, in which people enrol themselves at the live view.
class SetupRegistModeForm : public FormScreen<Ui::SetupRegistModeForm, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    /// Saves what was chosen.
    void saveData() { saveButtonTouch(); }

 protected:
    void built() override;
    bool validate(_gui_menu_& edited) override;
    void valuesShown() override { showRows(); }

 private:
    void showRows();
    void bindFromOne(Choice* choice, std::uint8_t RegistrationBlock::*field);
};
