#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_lcd_touch_test.h"

class LabelButton;
class TouchGrid;

/// Factory test of the touch panel: every part of the screen is touched once.
class f_lcd_touchTest : public FormScreen<Ui::f_lcd_touchTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;

 protected:
    void built() override;

 private:
    TouchGrid* grid_ = nullptr;
    LabelButton* begin_ = nullptr;
};
