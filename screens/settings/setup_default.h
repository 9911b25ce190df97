#pragma once

#include "screens/common/form_screen.h"
#include "ui_setup_default.h"

/// Resets logs, settings or everything.
class SetupDefault : public FormScreen<Ui::SetupDefault> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
