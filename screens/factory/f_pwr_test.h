#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_pwrTest;
}

/// Factory test of the power supply.
class f_pwrTest : public TitledForm {
    Q_OBJECT

 public:
    f_pwrTest(QWidget* parent, const QString& title);
    ~f_pwrTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_pwrTest> ui_;
};
