#include "screens/users/user_search_face.h"

#include "ui_user_search_face.h"

UserSearch_Face::UserSearch_Face(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("user_searchWindow")) {}

UserSearch_Face::~UserSearch_Face() = default;

void UserSearch_Face::createForm() {
    ui_ = std::make_unique<Ui::UserSearch_Face>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
