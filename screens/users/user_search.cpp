#include "screens/users/user_search.h"

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "screens/users/unstored_offer.h"
#include "screens/users/user_search_step.h"

namespace {

constexpr int kNoConnection = 1001;

constexpr ScreenText kTexts[] = {
    {kNoConnection, "ListItem_NoController", ScreenText::Error},
};

}  // namespace

UserSearch::UserSearch(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {
    popup_.add(UnstoredOffer::kTexts);
}

void UserSearch::built() {
    connect(ui_->searchCardRow, &WidgetButton::touched, this, &UserSearch::cardButtonTouch);
}

void UserSearch::windowInEvent() {
    FormScreen::windowInEvent();
    UnstoredOffer::make(popup_);
}

void UserSearch::cardButtonTouch() {
    if (!shell()->canChangeWindow())
        return;
    if (shell()->SendCommand(command::SearchUser, command::search::ByCard, 0))
        shell()->changeWindow(screen_title::kUserSearchCard);
    else
        popup_.show(kNoConnection);
}

void UserSearch::deviceAnswer(const DeviceMessage& message) {
    FormScreen::deviceAnswer(message);
    if (message.command == command::UserFound)
        searchResult(message.p1, message.p2, message);
}

void UserSearch::searchResult(unsigned char result, unsigned char type,
                              const DeviceMessage& message) {
    auto* step = qobject_cast<UserSearchStep*>(shell()->getActivateWindowForm());
    if (step != nullptr && step->searches(type))
        step->searchResult(result, QByteArray(message.payload, message.length));
}
