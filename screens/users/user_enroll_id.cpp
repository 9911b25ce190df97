#include "screens/users/user_enroll_id.h"

#include "ui_user_enroll_id.h"

UserEnroll_ID::UserEnroll_ID(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userEnroll_qualWindow")) {}

UserEnroll_ID::~UserEnroll_ID() = default;

void UserEnroll_ID::createForm() {
    ui_ = std::make_unique<Ui::UserEnroll_ID>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
