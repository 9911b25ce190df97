#pragma once

#include "screens/common/form_screen.h"
#include "screens/factory/camera_test_form.h"
#include "ui_color_test_form.h"

/// Factory test of the colors: a chart beside the live picture.
class ColorTestForm : public FormScreen<Ui::ColorTestForm, CameraTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
