#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_screen_image_select.h"

/// Choice of the standby screen's picture.
class EnviScreen_ImageSelect : public FormScreen<Ui::EnviScreen_ImageSelect> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
