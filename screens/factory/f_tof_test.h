#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_tofTest;
}

/// Factory test of the proximity sensor.
class f_tofTest : public TitledForm {
    Q_OBJECT

 public:
    f_tofTest(QWidget* parent, const QString& title);
    ~f_tofTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_tofTest> ui_;
};
