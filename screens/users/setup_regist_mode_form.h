#pragma once

#include "screens/common/form_screen.h"
#include "ui_setup_regist_mode_form.h"

/// Settings of the registration mode.
class SetupRegistModeForm : public FormScreen<Ui::SetupRegistModeForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
