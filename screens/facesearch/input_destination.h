#pragma once

#include "screens/common/form_screen.h"
#include "ui_input_destination.h"

/// Entry of a visitor's destination.
class InputDestination : public FormScreen<Ui::InputDestination> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
