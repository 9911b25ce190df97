#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui_cloud_window.h"

/// The management service: where it is, how often it is called, and how the contact stands.
class Cloud_Window : public FormScreen<Ui::Cloud_Window, SettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    void windowOutEvent() override;

 protected:
    void built() override;
    bool validate(_gui_menu_& edited) override;
    void valuesShown() override;
    void saved() override;

 private:
    void showContact();
    QString word(const char* key) const;

    QMetaObject::Connection following_;  // the contact, while the screen is up
};
