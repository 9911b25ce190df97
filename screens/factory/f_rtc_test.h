#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_rtc_test.h"

/// Factory test of the real-time clock.
class f_rtcTest : public FormScreen<Ui::f_rtcTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
