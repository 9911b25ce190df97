#pragma once

#include "screens/common/form_screen.h"
#include "screens/factory/pattern_test_form.h"
#include "ui_f_lcd_pixel_test.h"

/// Factory test of the display's pixels.
class f_lcd_pixelTest : public FormScreen<Ui::f_lcd_pixelTest, PatternTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
