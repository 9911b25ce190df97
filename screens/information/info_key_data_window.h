#pragma once

#include "screens/common/form_screen.h"
#include "ui_info_key_data_window.h"

/// The card keys.
class Info_KeyDataWindow : public FormScreen<Ui::Info_KeyDataWindow> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
