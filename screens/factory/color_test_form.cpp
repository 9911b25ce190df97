#include "screens/factory/color_test_form.h"

#include "ui_color_test_form.h"

ColorTestForm::ColorTestForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("factoryMenuWindow")) {}

ColorTestForm::~ColorTestForm() = default;

void ColorTestForm::createForm() {
    ui_ = std::make_unique<Ui::ColorTestForm>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
