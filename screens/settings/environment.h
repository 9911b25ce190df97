#pragma once

#include "screens/common/form_screen.h"
#include "ui_environment.h"

/// The environment menu: face recognition, screen, sound.
class environment : public FormScreen<Ui::environment> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
