#include "screens/factory/f_light_test.h"

#include "link/command_code.h"

namespace {

constexpr int kTime = 60000;  // milliseconds, for a person to bring it about

constexpr FactoryStep kSteps[] = {
    {command::FactoryLightTest, 0, command::FactoryLightReport, "ListItem_FactoryDark",
     "Info_FactoryLight", &factory_read::number, "%.0f lx", -FactoryStep::kOpen, 50,
     FactoryStep::WhenSeen, kTime, "dark"},
    {command::FactoryLightTest, 0, command::FactoryLightReport, "ListItem_FactoryBright",
     "Info_FactoryLight", &factory_read::number, "%.0f lx", 200, FactoryStep::kOpen,
     FactoryStep::WhenSeen, kTime, "bright"},
};

}  // namespace

void f_lightTest::built() {
    setSteps(kSteps);
}
