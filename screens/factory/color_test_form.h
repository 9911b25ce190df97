#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class ColorTestForm;
}

/// Factory test of the display's colours.
class ColorTestForm : public TitledForm {
    Q_OBJECT

 public:
    ColorTestForm(QWidget* parent, const QString& title);
    ~ColorTestForm() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::ColorTestForm> ui_;
};
