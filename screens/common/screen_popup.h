#pragma once

#include "ui/dialog_form.h"

/// One of the popups that a screen shows by number.
struct PopupText {
    const char* key;  ///< script key
    DialogForm::Icon icon;
};

/// The popup of one screen. It covers the screen, has one button and closes by itself; a new text
/// takes the place of the one that is shown. An error makes its sound.
class ScreenPopup {
 public:
    /// @p screen owns the dialog, which is made when it is first needed.
    explicit ScreenPopup(QWidget* screen) : screen_(screen) {}

    void show(const PopupText& text, int seconds);

 private:
    QWidget* const screen_;
    DialogForm* dialog_ = nullptr;
};
