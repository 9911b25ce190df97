#include "screens/factory/f_led_test.h"

#include "ui_f_led_test.h"

f_ledTest::f_ledTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_ledTest::~f_ledTest() = default;

void f_ledTest::createForm() {
    ui_ = std::make_unique<Ui::f_ledTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
