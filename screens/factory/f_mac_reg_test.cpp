#include "screens/factory/f_mac_reg_test.h"

#include "ui_f_mac_reg_test.h"

f_macRegTest::f_macRegTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_macRegTest::~f_macRegTest() = default;

void f_macRegTest::createForm() {
    ui_ = std::make_unique<Ui::f_macRegTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
