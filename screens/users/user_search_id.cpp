#include "screens/users/user_search_id.h"

#include "ui_user_search_id.h"

UserSearch_ID::UserSearch_ID(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("user_searchWindow")) {}

UserSearch_ID::~UserSearch_ID() = default;

void UserSearch_ID::createForm() {
    ui_ = std::make_unique<Ui::UserSearch_ID>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
