#include "screens/factory/f_net_test.h"

#include "ui_f_net_test.h"

f_netTest::f_netTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_netTest::~f_netTest() = default;

void f_netTest::createForm() {
    ui_ = std::make_unique<Ui::f_netTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
