#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_led_test.h"

/// Factory test of the LEDs.
class f_ledTest : public FormScreen<Ui::f_ledTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
