#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_sound_alarm.h"

/// Choice of the alarm's sound.
class EnviSound_Alarm : public FormScreen<Ui::EnviSound_Alarm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
