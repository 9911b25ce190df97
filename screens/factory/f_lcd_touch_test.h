#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_lcd_touch_test.h"

/// Factory test of the touch panel.
class f_lcd_touchTest : public FormScreen<Ui::f_lcd_touchTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
