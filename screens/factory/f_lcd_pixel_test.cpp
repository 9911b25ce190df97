#include "screens/factory/f_lcd_pixel_test.h"

#include "ui_f_lcd_pixel_test.h"

f_lcd_pixelTest::f_lcd_pixelTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_lcd_pixelTest::~f_lcd_pixelTest() = default;

void f_lcd_pixelTest::createForm() {
    ui_ = std::make_unique<Ui::f_lcd_pixelTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
