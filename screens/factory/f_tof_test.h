#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_tof_test.h"

/// Factory test of the proximity sensor.
class f_tofTest : public FormScreen<Ui::f_tofTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
