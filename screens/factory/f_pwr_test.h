#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_pwr_test.h"

/// Factory test of the power supply.
class f_pwrTest : public FormScreen<Ui::f_pwrTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
