#include "screens/recognize/input_admin_password.h"

#include "ui_input_admin_password.h"

InputAdminPassword::InputAdminPassword(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("stayWindow")) {}

InputAdminPassword::~InputAdminPassword() = default;

void InputAdminPassword::createForm() {
    ui_ = std::make_unique<Ui::InputAdminPassword>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
