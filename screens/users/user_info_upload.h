#pragma once

#include "screens/common/form_screen.h"
#include "ui_user_info_upload.h"

/// Sends the users to the access controller.
class UserInfoUpload : public FormScreen<Ui::UserInfoUpload> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
