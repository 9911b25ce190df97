#pragma once

#include "screens/common/screen_popup.h"

/// The question whether a user who is not stored yet is to be stored now, on the screens from which
/// users are managed.
namespace UnstoredOffer {

constexpr int kQuestion = 1101;
constexpr ScreenText kTexts[] = {
    {kQuestion, "Error_UserNotStored", ScreenText::Question, "Info_StoreUserAgain"},
};

/// Asks if there is such a user; OK leads to the person's screen.
void make(ScreenPopup& popup);

}  // namespace UnstoredOffer
