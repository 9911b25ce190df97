#include "screens/users/user_enroll_qualification.h"

#include "ui_user_enroll_qualification.h"

UserEnroll_Qualification::UserEnroll_Qualification(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userEnrollMenuWindow")) {}

UserEnroll_Qualification::~UserEnroll_Qualification() = default;

void UserEnroll_Qualification::createForm() {
    ui_ = std::make_unique<Ui::UserEnroll_Qualification>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
