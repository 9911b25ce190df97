#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_rtcTest;
}

/// Factory test of the clock.
class f_rtcTest : public TitledForm {
    Q_OBJECT

 public:
    f_rtcTest(QWidget* parent, const QString& title);
    ~f_rtcTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_rtcTest> ui_;
};
