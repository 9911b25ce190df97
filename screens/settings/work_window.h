#pragma once

#include "screens/common/form_screen.h"
#include "screens/settings/operation_settings_form.h"
#include "ui_work_window.h"

/// Settings of attendance mode.
class workWindow : public FormScreen<Ui::workWindow, OperationSettingsForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    /// Only the automatic mode goes by the times of the day.
    void modeSetSlot(int mode);
    void doorUseTouchSlot();
    /// Whether refusals are recorded; 0: they are.
    void recogFailSaveSlot(int choice);

 protected:
    void built() override;
    bool isFor(std::uint8_t operation) const override;
    bool validate(_gui_menu_& edited) override;
};
