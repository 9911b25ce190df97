#pragma once

#include "screens/common/form_screen.h"
#include "ui_network_menu_form.h"

/// The network menu.
class NetworkMenuForm : public FormScreen<Ui::NetworkMenuForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
