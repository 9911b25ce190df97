#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_part.h"
#include "ui_envi_sound_alarm.h"

/// Choice of the alarm's sound. A touch lets it be heard.
class EnviSound_Alarm : public FormScreen<Ui::EnviSound_Alarm, SettingsPart> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override {
        bind({ui_->sirenRow, ui_->bellRow, ui_->buzzerRow, ui_->chimeRow, ui_->beepsRow});
    }
};
