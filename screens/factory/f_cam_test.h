#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_camTest;
}

/// Factory test of the cameras.
class f_camTest : public TitledForm {
    Q_OBJECT

 public:
    f_camTest(QWidget* parent, const QString& title);
    ~f_camTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_camTest> ui_;
};
