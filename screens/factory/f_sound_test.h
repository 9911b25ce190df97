#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_soundTest;
}

/// Factory test of the speaker.
class f_soundTest : public TitledForm {
    Q_OBJECT

 public:
    f_soundTest(QWidget* parent, const QString& title);
    ~f_soundTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_soundTest> ui_;
};
