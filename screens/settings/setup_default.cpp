#include "screens/settings/setup_default.h"

#include "ui_setup_default.h"

SetupDefault::SetupDefault(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("setupMenuWindow")) {}

SetupDefault::~SetupDefault() = default;

void SetupDefault::createForm() {
    ui_ = std::make_unique<Ui::SetupDefault>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
