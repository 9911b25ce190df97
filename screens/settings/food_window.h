#pragma once

#include <memory>

#include "screens/settings/operation_settings_form.h"

namespace Ui {
class FoodWindow;
}

/// Settings of meal mode.
class FoodWindow : public OperationSettingsForm {
    Q_OBJECT

 public:
    FoodWindow(QWidget* parent, const QString& title);
    ~FoodWindow() override;

    void saveButtonTouch() override;

 protected:
    void createForm() override;
    void showRecord() override;

 private:
    void foodUseTouch();

    std::unique_ptr<Ui::FoodWindow> ui_;
};
