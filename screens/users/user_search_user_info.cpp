#include "screens/users/user_search_user_info.h"

#include "ui_user_search_user_info.h"

UserSearch_userInfo::UserSearch_userInfo(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("user_searchWindow")) {}

UserSearch_userInfo::~UserSearch_userInfo() = default;

void UserSearch_userInfo::createForm() {
    ui_ = std::make_unique<Ui::UserSearch_userInfo>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
