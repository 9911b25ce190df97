#include "screens/factory/f_memory_test.h"

#include "ui_f_memory_test.h"

f_memoryTest::f_memoryTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_memoryTest::~f_memoryTest() = default;

void f_memoryTest::createForm() {
    ui_ = std::make_unique<Ui::f_memoryTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
