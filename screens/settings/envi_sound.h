#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_sound.h"

/// Settings of the sound.
class enviSound : public FormScreen<Ui::enviSound> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
