#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_light_test.h"

/// Factory test of the light sensor.
class f_lightTest : public FormScreen<Ui::f_lightTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
