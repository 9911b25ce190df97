#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_ddns_window.h"

/// The dynamic name service.
class ddns_window : public FormScreen<Ui::ddns_window, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    /// Takes the controller's answer to a save; 0: stored.
    void SetDDNSResult(unsigned char result) { SetSettingResult(result); }

 protected:
    void built() override;
    bool validate(_gui_menu_& edited) override;
};
