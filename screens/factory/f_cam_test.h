#pragma once

#include "screens/common/form_screen.h"
#include "screens/factory/camera_test_form.h"
#include "ui_f_cam_test.h"

/// Factory test of the two cameras.
class f_camTest : public FormScreen<Ui::f_camTest, CameraTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;

 protected:
    void built() override;
};
