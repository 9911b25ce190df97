#include "screens/users/user_group_info.h"

#include "ui_user_group_info.h"

UserGroupInfo::UserGroupInfo(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserGroupInfo::~UserGroupInfo() = default;

void UserGroupInfo::createForm() {
    ui_ = std::make_unique<Ui::UserGroupInfo>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
