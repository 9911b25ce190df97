#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_mac_reg_test.h"

/// Factory test of the MAC address.
class f_macRegTest : public FormScreen<Ui::f_macRegTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
