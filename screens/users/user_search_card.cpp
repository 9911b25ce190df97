#include "screens/users/user_search_card.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

constexpr int kFrameTime = 600;  // milliseconds

}  // namespace

void UserSearch_Card::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->animation->play({QStringLiteral("card_hold_1.png"), QStringLiteral("card_hold_2.png"),
                          QStringLiteral("card_hold_3.png")},
                         kFrameTime, true);
    await(kSearchSeconds, ui_->secondsLine);
}

std::uint8_t UserSearch_Card::type() const {
    return command::search::ByCard;
}

void UserSearch_Card::notFound(DeviceRequest::Failure why) {
    if (why == DeviceRequest::Failure::LinkDown) {
        FormScreen::notFound(why);
        return;
    }
    // The controller has not said it: nothing was tagged.
    giveUp();
    searchResult(command::asks::NothingTagged, {});
}

void UserSearch_Card::giveUp() {
    shell()->SendCommand(command::AbandonCardTag, 0, 0);
}
