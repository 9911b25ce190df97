#pragma once

#include "screens/common/form_screen.h"
#include "ui_ddns_window.h"

/// The dynamic name service.
class ddns_window : public FormScreen<Ui::ddns_window> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
