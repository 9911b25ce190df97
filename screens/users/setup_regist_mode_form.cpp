#include "screens/users/setup_regist_mode_form.h"

#include "ui_setup_regist_mode_form.h"

SetupRegistModeForm::SetupRegistModeForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("setupMenuWindow")) {}

SetupRegistModeForm::~SetupRegistModeForm() = default;

void SetupRegistModeForm::createForm() {
    ui_ = std::make_unique<Ui::SetupRegistModeForm>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
