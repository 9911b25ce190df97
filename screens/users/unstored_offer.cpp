#include "screens/users/unstored_offer.h"

#include "app/screen_titles.h"
#include "app/window_form.h"
#include "app/window_shell.h"
#include "screens/users/user_record.h"

void UnstoredOffer::make(ScreenPopup& popup) {
    if (UnstoredUser::kept())
        popup.ask(kQuestion, [] { WindowForm::shell()->changeWindow(screen_title::kUserInfo); });
}
