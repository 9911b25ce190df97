#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_lcd_pixelTest;
}

/// Factory test of the display's pixels.
class f_lcd_pixelTest : public TitledForm {
    Q_OBJECT

 public:
    f_lcd_pixelTest(QWidget* parent, const QString& title);
    ~f_lcd_pixelTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_lcd_pixelTest> ui_;
};
