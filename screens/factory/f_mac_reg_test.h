#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_macRegTest;
}

/// Registers the MAC address.
class f_macRegTest : public TitledForm {
    Q_OBJECT

 public:
    f_macRegTest(QWidget* parent, const QString& title);
    ~f_macRegTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_macRegTest> ui_;
};
