#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class FoodWindow;
}

/// Settings of meal mode.
class FoodWindow : public TitledForm {
    Q_OBJECT

 public:
    FoodWindow(QWidget* parent, const QString& title);
    ~FoodWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::FoodWindow> ui_;
};
