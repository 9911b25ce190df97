#include "screens/users/user_enroll.h"

#include "ui_user_enroll.h"

UserEnroll::UserEnroll(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserEnroll::~UserEnroll() = default;

void UserEnroll::createForm() {
    ui_ = std::make_unique<Ui::UserEnroll>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
