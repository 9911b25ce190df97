#include "screens/settings/environment.h"

#include "ui_environment.h"

environment::environment(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

environment::~environment() = default;

void environment::createForm() {
    ui_ = std::make_unique<Ui::environment>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
