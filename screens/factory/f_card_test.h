#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_cardTest;
}

/// Factory test of the card reader.
class f_cardTest : public TitledForm {
    Q_OBJECT

 public:
    f_cardTest(QWidget* parent, const QString& title);
    ~f_cardTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_cardTest> ui_;
};
