#include "screens/users/user_search_card.h"

#include "ui_user_search_card.h"

UserSearch_Card::UserSearch_Card(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("user_searchWindow")) {}

UserSearch_Card::~UserSearch_Card() = default;

void UserSearch_Card::createForm() {
    ui_ = std::make_unique<Ui::UserSearch_Card>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
