#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_tof_test.h"

/// Factory test of the proximity sensor.
class f_tofTest : public FormScreen<Ui::f_tofTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
