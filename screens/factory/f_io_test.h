#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_ioTest;
}

/// Factory test of relay, exit button and tamper switch.
class f_ioTest : public TitledForm {
    Q_OBJECT

 public:
    f_ioTest(QWidget* parent, const QString& title);
    ~f_ioTest() override;

    void deviceAnswer(const DeviceMessage& message) override;

 protected:
    void createForm() override;

 private:
    /// Goes on with the test, or ends it behind its last step.
    void startStepAfter(int done);

    std::unique_ptr<Ui::f_ioTest> ui_;
};
