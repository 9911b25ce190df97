#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_net_test.h"

/// Factory test of the RS-422 line and the network.
class f_netTest : public FormScreen<Ui::f_netTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
