#pragma once

#include "screens/common/form_screen.h"
#include "ui_cloud_window.h"

/// The management service.
class Cloud_Window : public FormScreen<Ui::Cloud_Window> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
