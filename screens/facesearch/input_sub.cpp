#include "screens/facesearch/input_sub.h"

#include "ui_input_sub.h"

InputSub::InputSub(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("liveWindow")) {}

InputSub::~InputSub() = default;

void InputSub::createForm() {
    ui_ = std::make_unique<Ui::InputSub>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
