#include "screens/factory/f_tof_test.h"

#include "ui_f_tof_test.h"

f_tofTest::f_tofTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_tofTest::~f_tofTest() = default;

void f_tofTest::createForm() {
    ui_ = std::make_unique<Ui::f_tofTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
