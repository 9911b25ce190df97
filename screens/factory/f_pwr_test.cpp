#include "screens/factory/f_pwr_test.h"

#include "ui_f_pwr_test.h"

f_pwrTest::f_pwrTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_pwrTest::~f_pwrTest() = default;

void f_pwrTest::createForm() {
    ui_ = std::make_unique<Ui::f_pwrTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
