#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_ledTest;
}

/// Factory test of the LEDs.
class f_ledTest : public TitledForm {
    Q_OBJECT

 public:
    f_ledTest(QWidget* parent, const QString& title);
    ~f_ledTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_ledTest> ui_;
};
