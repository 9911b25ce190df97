#include "screens/factory/f_led_test.h"

#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

namespace factory = command::factory;

constexpr FactoryStep stepOf(std::uint8_t color, const char* name, const char* labelKey) {
    return {command::FactoryLedTest,
            color,
            command::FactoryLedReport,
            labelKey,
            "Info_FactoryLed",
            &factory_read::resultOfOption,
            nullptr,
            0,
            0,
            FactoryStep::AlsoByPerson,
            FactoryStep::kAnswerTime,
            name};
}

constexpr FactoryStep kSteps[] = {
    stepOf(factory::Red, "red", "ListItem_FactoryRed"),
    stepOf(factory::Green, "green", "ListItem_FactoryGreen"),
    stepOf(factory::Blue, "blue", "ListItem_FactoryBlue"),
};

}  // namespace

void f_ledTest::built() {
    setSteps(kSteps);
}
