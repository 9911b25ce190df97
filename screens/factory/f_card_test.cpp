#include "screens/factory/f_card_test.h"

#include "ui_f_card_test.h"

f_cardTest::f_cardTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_cardTest::~f_cardTest() = default;

void f_cardTest::createForm() {
    ui_ = std::make_unique<Ui::f_cardTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
