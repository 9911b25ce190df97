#include "screens/recognize/in_out_button_form.h"

#include "ui_in_out_button_form.h"

InOutButtonForm::InOutButtonForm(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::InOutButtonForm>()) {
    ui_->setupUi(this);
    const struct {
        WorkButton* button;
        void (InOutButtonForm::*signal)();
    } choices[] = {{ui_->inButton, &InOutButtonForm::inTouched},
                   {ui_->outButton, &InOutButtonForm::outTouched},
                   {ui_->outDutyButton, &InOutButtonForm::outDutyTouched},
                   {ui_->inDutyButton, &InOutButtonForm::inDutyTouched}};
    for (const auto& choice : choices) {
        connect(choice.button, &WidgetButton::touched, this, [this, choice] {
            if (used_)
                return;
            use(choice.button);
            emit(this->*choice.signal)();
        });
    }
}

InOutButtonForm::~InOutButtonForm() = default;

void InOutButtonForm::reset() {
    use(nullptr);
}

void InOutButtonForm::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    reset();
}

void InOutButtonForm::use(WorkButton* chosen) {
    used_ = chosen != nullptr;
    for (WorkButton* button :
         {ui_->inButton, ui_->outButton, ui_->outDutyButton, ui_->inDutyButton}) {
        // A finger that came down for somebody else's result decides nothing.
        button->cancelTouch();
        button->setSelected(button == chosen);
        button->setEnabled(!used_);
    }
}
