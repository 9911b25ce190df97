#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_lcd_touchTest;
}

/// Factory test of the touch panel.
class f_lcd_touchTest : public TitledForm {
    Q_OBJECT

 public:
    f_lcd_touchTest(QWidget* parent, const QString& title);
    ~f_lcd_touchTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_lcd_touchTest> ui_;
};
