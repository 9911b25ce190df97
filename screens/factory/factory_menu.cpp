#include "screens/factory/factory_menu.h"

#include "ui_factory_menu.h"

FactoryMenu::FactoryMenu(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

FactoryMenu::~FactoryMenu() = default;

void FactoryMenu::createForm() {
    ui_ = std::make_unique<Ui::FactoryMenu>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
