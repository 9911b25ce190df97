#include "screens/users/user_enroll_card_tag.h"

#include "ui_user_enroll_card_tag.h"

UserEnroll_CardTag::UserEnroll_CardTag(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserEnroll_CardTag::~UserEnroll_CardTag() = default;

void UserEnroll_CardTag::createForm() {
    ui_ = std::make_unique<Ui::UserEnroll_CardTag>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
