#include "screens/factory/f_rtc_test.h"

#include "ui_f_rtc_test.h"

f_rtcTest::f_rtcTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_rtcTest::~f_rtcTest() = default;

void f_rtcTest::createForm() {
    ui_ = std::make_unique<Ui::f_rtcTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
