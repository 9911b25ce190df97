#include "screens/factory/f_ver_test.h"

#include "ui_f_ver_test.h"

f_verTest::f_verTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_verTest::~f_verTest() = default;

void f_verTest::createForm() {
    ui_ = std::make_unique<Ui::f_verTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
