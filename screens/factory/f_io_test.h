#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_io_test.h"

/// Factory test of relay, exit button and tamper switch. The controller says when a step is done.
class f_ioTest : public FormScreen<Ui::f_ioTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void deviceAnswer(const DeviceMessage& message) override;

 protected:
    void built() override;
    bool goesOnByItself() const override { return false; }

 private:
    /// Goes on with the test, or ends it behind its last step, whatever screen is up.
    void startStepAfter(int done);
};
