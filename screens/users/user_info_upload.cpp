#include "screens/users/user_info_upload.h"

#include "ui_user_info_upload.h"

UserInfoUpload::UserInfoUpload(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserInfoUpload::~UserInfoUpload() = default;

void UserInfoUpload::createForm() {
    ui_ = std::make_unique<Ui::UserInfoUpload>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
