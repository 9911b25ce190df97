#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_lcdTest;
}

/// Factory test of the display.
class f_lcdTest : public TitledForm {
    Q_OBJECT

 public:
    f_lcdTest(QWidget* parent, const QString& title);
    ~f_lcdTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_lcdTest> ui_;
};
