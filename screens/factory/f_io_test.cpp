#include "screens/factory/f_io_test.h"

#include "app/main_window.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui_f_io_test.h"

f_ioTest::f_ioTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_ioTest::~f_ioTest() = default;

void f_ioTest::createForm() {
    ui_ = std::make_unique<Ui::f_ioTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}

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
