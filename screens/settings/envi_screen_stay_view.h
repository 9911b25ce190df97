#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_screen_stay_view.h"

/// What the standby screen shows.
class EnviScreen_StayView : public FormScreen<Ui::EnviScreen_StayView> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
