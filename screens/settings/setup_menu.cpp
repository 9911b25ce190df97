#include "screens/settings/setup_menu.h"

#include "ui_setup_menu.h"

SetupMenu::SetupMenu(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

SetupMenu::~SetupMenu() = default;

void SetupMenu::createForm() {
    ui_ = std::make_unique<Ui::SetupMenu>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
