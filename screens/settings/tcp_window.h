#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_tcp_window.h"

/// The terminal's own address. What is chosen here is in force, and in the record, when the
/// controller has confirmed it.
class TCP_Window : public FormScreen<Ui::TCP_Window, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowOutEvent() override;

 protected:
    void built() override;
    void valuesShown() override;
    bool validate(_gui_menu_& edited) override;
    int questionBefore(const _gui_menu_& edited) override;
    void holdBack(_gui_menu_& stored, const _gui_menu_& former) override;
    void confirmed(_gui_menu_& record) override;

 private:
    /// A field that shows what is in force while the address comes by DHCP.
    void bindField(InputField* input, std::uint8_t (AddressBlock::*field)[4], QString (*inForce)(),
                   AddressRule rule, int fault);
    bool isByDhcp() const;
};
