#pragma once

#include "screens/common/form_screen.h"
#include "ui_tcp_window.h"

/// The terminal's own address.
class TCP_Window : public FormScreen<Ui::TCP_Window> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
