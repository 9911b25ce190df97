#pragma once

#include "screens/common/form_screen.h"
#include "ui_setup_menu.h"

/// Setup of the device, and the way to what goes with it.
class SetupMenu : public FormScreen<Ui::SetupMenu> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
