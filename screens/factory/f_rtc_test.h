#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_rtc_test.h"

/// Factory test of the clock.
class f_rtcTest : public FormScreen<Ui::f_rtcTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
