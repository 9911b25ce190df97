#include "screens/factory/f_pwr_test.h"

#include "link/command_code.h"

namespace {

/// The voltage number @p number of a report, which has them in millivolts.
template <std::size_t number>
std::optional<double> volts(const DeviceMessage& message, const FactoryStep&) {
    constexpr std::size_t kVoltages = 3;
    const auto millivolts = message.records<quint16>();
    return millivolts.size() == kVoltages ? std::optional(millivolts[number] / 1000.0)
                                          : std::nullopt;
}

constexpr FactoryStep kSteps[] = {
    {command::FactoryPowerTest, 0, command::FactoryPowerReport, "ListItem_Factory12V", nullptr,
     &volts<0>, "%.2f V", 10.8, 13.2, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime, "12V"},
    {command::FactoryPowerTest, 0, command::FactoryPowerReport, "ListItem_Factory5V", nullptr,
     &volts<1>, "%.2f V", 4.75, 5.25, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime, "5V"},
    {command::FactoryPowerTest, 0, command::FactoryPowerReport, "ListItem_Factory3V3", nullptr,
     &volts<2>, "%.2f V", 3.135, 3.465, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime,
     "3.3V"},
};

}  // namespace

void f_pwrTest::built() {
    setSteps(kSteps);
}
