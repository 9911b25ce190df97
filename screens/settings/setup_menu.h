#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "ui/visible_timer.h"
#include "ui_setup_menu.h"

/// Setup of the device, and the way to what goes with it. A terminal that has not been set up is
/// not left from here before a save has given it a password, which commissions it.
class SetupMenu : public FormScreen<Ui::SetupMenu, SettingsForm> {
    Q_OBJECT

 public:
    SetupMenu(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;

 protected:
    void built() override;
    void valuesShown() override;
    bool validate(_gui_menu_& edited) override;
    void holdBack(_gui_menu_& stored, const _gui_menu_& former) override;
    void confirmed(_gui_menu_& record) override;
    void prevButtonTouch() override;

 private:
    void bindTerminal();
    void bindAccess();
    void bindDoor();
    void bindPassword();
    /// The number of what is wrong with the password that was entered, 0 for nothing.
    int storePassword(_gui_menu_& record) const;
    void removePasswordTouch();
    void showPassword(const _gui_menu_& record);
    /// Whether the two fields of the clock are open.
    void openClock(bool open);
    void setTimeTouch();
    /// Shows the time, and does so again as each minute begins.
    void showTime();

    DeviceRequest clock_;
    VisibleTimer minute_;
    bool removing_ = false;  // the password, with the next save
};
