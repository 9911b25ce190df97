#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_lightTest;
}

/// Factory test of the light sensor.
class f_lightTest : public TitledForm {
    Q_OBJECT

 public:
    f_lightTest(QWidget* parent, const QString& title);
    ~f_lightTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_lightTest> ui_;
};
