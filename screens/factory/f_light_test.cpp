#include "screens/factory/f_light_test.h"

#include "ui_f_light_test.h"

f_lightTest::f_lightTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_lightTest::~f_lightTest() = default;

void f_lightTest::createForm() {
    ui_ = std::make_unique<Ui::f_lightTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
