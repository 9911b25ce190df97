#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_memoryTest;
}

/// Factory test of the memory.
class f_memoryTest : public TitledForm {
    Q_OBJECT

 public:
    f_memoryTest(QWidget* parent, const QString& title);
    ~f_memoryTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_memoryTest> ui_;
};
