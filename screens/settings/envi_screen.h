#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_screen.h"

/// Settings of the screen.
class enviScreen : public FormScreen<Ui::enviScreen> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
