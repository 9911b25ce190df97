#include "screens/facesearch/input_destination.h"

#include "ui_input_destination.h"

InputDestination::InputDestination(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("userEnroll_qualWindow")) {}

InputDestination::~InputDestination() = default;

void InputDestination::createForm() {
    ui_ = std::make_unique<Ui::InputDestination>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
