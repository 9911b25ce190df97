#include "screens/factory/f_tof_test.h"

#include "link/command_code.h"

namespace {

constexpr int kTime = 60000;  // milliseconds, for a person to bring it about

constexpr FactoryStep kSteps[] = {
    {command::FactoryProximityTest, 0, command::FactoryProximityReport, "ListItem_FactoryNear",
     "Info_FactoryProximity", &factory_read::number, "%.0f mm", -FactoryStep::kOpen, 300,
     FactoryStep::WhenSeen, kTime, "near"},
    {command::FactoryProximityTest, 0, command::FactoryProximityReport, "ListItem_FactoryFar",
     "Info_FactoryProximity", &factory_read::number, "%.0f mm", 600, FactoryStep::kOpen,
     FactoryStep::WhenSeen, kTime, "far"},
};

}  // namespace

void f_tofTest::built() {
    setSteps(kSteps);
}
