#include "screens/factory/f_sound_test.h"

#include <iterator>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/label_button.h"

namespace {

constexpr FactoryStep stepOf(std::uint8_t sound, const char* name, const char* labelKey) {
    return {command::FactorySoundTest,
            sound,
            0,
            labelKey,
            "Info_FactorySound",
            nullptr,
            nullptr,
            0,
            0,
            FactoryStep::ByPerson,
            FactoryStep::kAnswerTime,
            name};
}

constexpr FactoryStep kSteps[] = {
    stepOf(0, "sound1", "ListItem_FactorySound1"),
    stepOf(1, "sound2", "ListItem_FactorySound2"),
    stepOf(2, "sound3", "ListItem_FactorySound3"),
};
static_assert(std::size(kSteps) == command::factory::kSounds);

}  // namespace

void f_soundTest::built() {
    setSteps(kSteps);
    connect(addAction("Button_FactoryReplay", "replayButton", true), &LabelButton::touched, this,
            [this] { start(askedStep()); });
}
