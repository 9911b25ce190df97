#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_led_test.h"

/// Factory test of the status LED: the board says whether it could, a person whether it does.
class f_ledTest : public FormScreen<Ui::f_ledTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
