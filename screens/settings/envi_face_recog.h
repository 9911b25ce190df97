#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_envi_face_recog.h"

/// Settings of the face recognition.
class EnviFaceRecog : public FormScreen<Ui::EnviFaceRecog, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    /// Takes the controller's answer to a save; 0: stored.
    void setSettingResult(unsigned char result) { SetSettingResult(result); }

 protected:
    void built() override;
};
