#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_envi_sound.h"

/// Settings of the sound.
class enviSound : public FormScreen<Ui::enviSound, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
    void valuesShown() override;
};
