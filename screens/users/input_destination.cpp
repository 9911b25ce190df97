#include "screens/users/input_destination.h"

#include "app/window_shell.h"
#include "link/device_message.h"

namespace {

constexpr int kTooLong = 52;

constexpr ScreenText kTexts[] = {
    {kTooLong, "Error_DestinationTooLong", ScreenText::Error},
};

}  // namespace

void InputDestination::built() {
    popup().add(kTexts);
    connect(ui_->destinationField, &InputField::doneTouched, this,
            &InputDestination::nextButtonTouch);
}

void InputDestination::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->destinationField->setText(fieldText(user().destination));
    shell()->showTouchKey(ui_->destinationField);
}

void InputDestination::nextButtonTouch() {
    shell()->removeTouchKey();
    const QString destination = ui_->destinationField->text().simplified();
    _gui_user_ visitor = user();
    // The record counts bytes, and a letter may have several.
    if (destination.toUtf8().size() > static_cast<int>(sizeof visitor.destination)) {
        popup().showThen(kTooLong, [this] { shell()->showTouchKey(ui_->destinationField); });
        return;
    }
    setFieldText(visitor.destination, destination);
    setUser(visitor);
    EnrolStep::nextButtonTouch();
}
