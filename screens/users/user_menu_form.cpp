#include "screens/users/user_menu_form.h"

#include "ui_user_menu_form.h"

UserMenuForm::UserMenuForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

UserMenuForm::~UserMenuForm() = default;

void UserMenuForm::createForm() {
    ui_ = std::make_unique<Ui::UserMenuForm>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
