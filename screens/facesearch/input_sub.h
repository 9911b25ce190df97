#pragma once

#include "screens/common/form_screen.h"
#include "ui_input_sub.h"

/// Entry of a customer number at the door.
class InputSub : public FormScreen<Ui::InputSub> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
