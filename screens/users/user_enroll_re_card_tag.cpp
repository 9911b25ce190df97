#include "screens/users/user_enroll_re_card_tag.h"

#include "ui_user_enroll_re_card_tag.h"

UserEnroll_ReCardTag::UserEnroll_ReCardTag(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserEnroll_ReCardTag::~UserEnroll_ReCardTag() = default;

void UserEnroll_ReCardTag::createForm() {
    ui_ = std::make_unique<Ui::UserEnroll_ReCardTag>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
