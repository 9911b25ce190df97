#pragma once

#include "screens/common/form_screen.h"
#include "ui_envi_face_recog.h"

/// Settings of the face recognition.
class EnviFaceRecog : public FormScreen<Ui::EnviFaceRecog> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
