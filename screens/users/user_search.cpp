#include "screens/users/user_search.h"

#include "ui_user_search.h"

UserSearch::UserSearch(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserSearch::~UserSearch() = default;

void UserSearch::createForm() {
    ui_ = std::make_unique<Ui::UserSearch>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
