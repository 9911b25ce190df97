#pragma once

#include "screens/common/form_screen.h"
#include "screens/factory/pattern_test_form.h"
#include "ui_f_lcd_test.h"

/// Factory test of the display's colors.
class f_lcdTest : public FormScreen<Ui::f_lcdTest, PatternTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
