#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_io_test.h"

/// Factory test of relay, exit button and tamper switch.
class f_ioTest : public FormScreen<Ui::f_ioTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void deviceAnswer(const DeviceMessage& message) override;

 private:
    /// Goes on with the test, or ends it behind its last step.
    void startStepAfter(int done);
};
