#include "screens/factory/f_lcd_test.h"

#include "ui_f_lcd_test.h"

f_lcdTest::f_lcdTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_lcdTest::~f_lcdTest() = default;

void f_lcdTest::createForm() {
    ui_ = std::make_unique<Ui::f_lcdTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
