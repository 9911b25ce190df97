#pragma once

#include "screens/common/form_screen.h"
#include "ui_color_test_form.h"

/// Factory test of the display's colours.
class ColorTestForm : public FormScreen<Ui::ColorTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
