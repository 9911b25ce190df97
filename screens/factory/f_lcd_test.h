#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_lcd_test.h"

/// Factory test of the display.
class f_lcdTest : public FormScreen<Ui::f_lcdTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
