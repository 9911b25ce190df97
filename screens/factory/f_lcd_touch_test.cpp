#include "screens/factory/f_lcd_touch_test.h"

#include "ui_f_lcd_touch_test.h"

f_lcd_touchTest::f_lcd_touchTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_lcd_touchTest::~f_lcd_touchTest() = default;

void f_lcd_touchTest::createForm() {
    ui_ = std::make_unique<Ui::f_lcd_touchTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
