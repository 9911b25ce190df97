#include "screens/factory/f_io_test.h"

#include "ui_f_io_test.h"

f_ioTest::f_ioTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_ioTest::~f_ioTest() = default;

void f_ioTest::createForm() {
    ui_ = std::make_unique<Ui::f_ioTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
