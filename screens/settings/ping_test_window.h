#pragma once

#include "screens/common/form_screen.h"
#include "ui_ping_test_window.h"

/// Sends pings to an address and shows what comes back.
class PingTestWindow : public FormScreen<Ui::PingTestWindow> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
