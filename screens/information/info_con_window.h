#pragma once

#include "screens/common/form_screen.h"
#include "ui_info_con_window.h"

/// The terminal's connections.
class info_conWindow : public FormScreen<Ui::info_conWindow> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
