#include "screens/factory/f_cam_test.h"

#include "ui_f_cam_test.h"

f_camTest::f_camTest(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

f_camTest::~f_camTest() = default;

void f_camTest::createForm() {
    ui_ = std::make_unique<Ui::f_camTest>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
