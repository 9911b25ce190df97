#include "screens/factory/f_net_test.h"

#include "link/command_code.h"

namespace {

constexpr FactoryStep kSteps[] = {
    {command::FactoryRs422Test, 0, command::FactoryRs422Report, "ListItem_FactoryRs422", nullptr,
     &factory_read::result, nullptr, 0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime,
     "rs422"},
    {command::FactoryPingTest, 0, command::FactoryPingReport, "ListItem_FactoryPing", nullptr,
     &factory_read::result, nullptr, 0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime,
     "ping"},
};

}  // namespace

void f_netTest::built() {
    setSteps(kSteps);
}
