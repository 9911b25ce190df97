#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_mac_reg_test.h"

/// Registers the MAC address.
class f_macRegTest : public FormScreen<Ui::f_macRegTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
