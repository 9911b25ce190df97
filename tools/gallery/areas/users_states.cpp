#include "tools/gallery/area_states.h"

#include "link/command_code.h"
#include "sim/common/portrait.h"
#include "tools/gallery/stage.h"
#include "ui/input_field.h"
#include "ui/thumbnail_view.h"

namespace {

void largePhoto(Stage& stage) {
    QPixmap photo;
    photo.loadFromData(portrait::jpeg(0));
    auto* thumbnail = stage.add<ThumbnailView>(QRect(28, 100, 128, 152));
    thumbnail->setObjectName(QStringLiteral("userPhoto"));
    thumbnail->setPhoto(photo);
    stage.showAdded();
    stage.touch(thumbnail->objectName());
}

constexpr AreaState kStates[] = {
    {"userMenuWindow", "too-many-users",
     [](Stage& stage) { stage.receive(command::EnrolmentRefused, 1); }},
    {"userMenuWindow", "another-enrolment",
     [](Stage& stage) { stage.receive(command::EnrolmentRefused, 2); }},
    {"userMenuWindow", "no-response",
     [](Stage& stage) { stage.receive(command::EnrolmentRefused, 3); }},
    {"userMenuWindow", "deleted",
     [](Stage& stage) { stage.receive(command::UserDeleteResult, 0); }},
    {"userMenuWindow", "not-deleted",
     [](Stage& stage) { stage.receive(command::UserDeleteResult, 1); }},
    {"userEnrollMenuWindow", "pressed",
     [](Stage& stage) { stage.press(QStringLiteral("authFaceOnlyRow")); }},
    {"InputDestinationForm", "keypad-digits",
     [](Stage& stage) { stage.useKeypad(InputField::Digits, "0 1 0 2 3 4 5", "010"); }},
    {"userSearch_InfoWindow", "photo", largePhoto},
    {"InputDestinationForm", "keypad-first-page",
     [](Stage& stage) { stage.useKeypad(InputField::Any, ""); }},
    {"InputDestinationForm", "keypad-hangul",
     [](Stage& stage) {
         // Only in Korean the Hangul page is the first.
         stage.useKeypad(InputField::Any,
                         stage.language() == 0 ? "ㅎ ㅏ ㄴ ㄱ ㅡ ㄹ" : "hangul ㅎ ㅏ ㄴ ㄱ ㅡ ㄹ");
     }},
    {"InputDestinationForm", "keypad-latin-shift",
     [](Stage& stage) { stage.useKeypad(InputField::Latin, "z e l shift", ".com"); }},
    {"InputDestinationForm", "keypad-symbols",
     [](Stage& stage) { stage.useKeypad(InputField::Latin, "symbols"); }},
    {"InputDestinationForm", "keypad-more-symbols",
     [](Stage& stage) { stage.useKeypad(InputField::Latin, "symbols shift"); }},
};

}  // namespace

AreaStates usersStates() {
    return kStates;
}
