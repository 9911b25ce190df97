#include "screens/factory/f_sound_test.h"

#include "ui_f_sound_test.h"

f_soundTest::f_soundTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_soundTest::~f_soundTest() = default;

void f_soundTest::createForm() {
    ui_ = std::make_unique<Ui::f_soundTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
