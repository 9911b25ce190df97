#include "screens/users/user_enroll_face.h"

#include "ui_user_enroll_face.h"

UserEnroll_Face::UserEnroll_Face(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userMenuWindow")) {}

UserEnroll_Face::~UserEnroll_Face() = default;

void UserEnroll_Face::createForm() {
    ui_ = std::make_unique<Ui::UserEnroll_Face>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
