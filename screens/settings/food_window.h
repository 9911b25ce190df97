#pragma once

#include "screens/common/form_screen.h"
#include "screens/settings/operation_settings_form.h"
#include "ui_food_window.h"

/// Settings of meal mode.
class FoodWindow : public FormScreen<Ui::FoodWindow, OperationSettingsForm> {
    Q_OBJECT

 public:
    FoodWindow(QWidget* parent, const QString& title);

    void foodUseTouch();

 protected:
    void built() override;
    bool isFor(std::uint8_t operation) const override;
    bool validate(_gui_menu_& edited) override;
};
