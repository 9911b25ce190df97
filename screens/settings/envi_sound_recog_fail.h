#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_part.h"
#include "ui_envi_sound_recog_fail.h"

/// Choice of the sound of a failed recognition. A touch lets it be heard.
class EnviSound_RecogFail : public FormScreen<Ui::EnviSound_RecogFail, SettingsPart> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override {
        bind({ui_->sirenRow, ui_->bellRow, ui_->buzzerRow, ui_->chimeRow, ui_->beepsRow});
    }
};
