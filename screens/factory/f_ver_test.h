#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_verTest;
}

/// Factory test of the versions.
class f_verTest : public TitledForm {
    Q_OBJECT

 public:
    f_verTest(QWidget* parent, const QString& title);
    ~f_verTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_verTest> ui_;
};
