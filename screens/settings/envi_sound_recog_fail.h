#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_sound_recog_fail.h"

/// Choice of the sound of a failed recognition.
class EnviSound_RecogFail : public FormScreen<Ui::EnviSound_RecogFail> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
