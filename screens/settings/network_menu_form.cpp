#include "screens/settings/network_menu_form.h"

#include "ui_network_menu_form.h"

NetworkMenuForm::NetworkMenuForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

NetworkMenuForm::~NetworkMenuForm() = default;

void NetworkMenuForm::createForm() {
    ui_ = std::make_unique<Ui::NetworkMenuForm>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
