#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_cam_test.h"

/// Factory test of the cameras.
class f_camTest : public FormScreen<Ui::f_camTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
