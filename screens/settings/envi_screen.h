#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_envi_screen.h"

/// Settings of the screen.
class enviScreen : public FormScreen<Ui::enviScreen, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
    void valuesShown() override;
};
