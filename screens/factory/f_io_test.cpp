#include "screens/factory/f_io_test.h"

#include "app/main_window.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"

void f_ioTest::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::FactoryIoStepDone)
        startStepAfter(message.p1);
}

void f_ioTest::startStepAfter(int done) {
    namespace factory = command::factory;
    MainWindow* shell = MainWindow::getMainWindow();
    if (done < factory::TamperSwitch)
        shell->SendCommand(command::FactoryIoTest, factory::Start,
                           static_cast<unsigned char>(done + 1));
    else
        shell->SendCommand(command::FactoryIoTest, factory::Stop, 0);
}
