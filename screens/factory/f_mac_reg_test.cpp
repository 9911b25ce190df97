#include "screens/factory/f_mac_reg_test.h"

#include <algorithm>
#include <iterator>

#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

struct MacAddress {
    quint8 bytes[6];
};

QString addressOf(const DeviceMessage& message) {
    const auto address = message.record<MacAddress>();
    return address ? QString::fromLatin1(
                         QByteArray(reinterpret_cast<const char*>(address->bytes), sizeof *address)
                             .toHex(':')
                             .toUpper())
                   : QString();
}

/// Whether the address is that of one interface: neither none, nor all's, nor a group's.
std::optional<double> isOne(const DeviceMessage& message, const FactoryStep&) {
    constexpr quint8 kGroup = 0x01;
    const auto address = message.record<MacAddress>();
    if (!address)
        return std::nullopt;
    const bool none = std::all_of(std::begin(address->bytes), std::end(address->bytes),
                                  [](quint8 byte) { return byte == 0; });
    // The address of all is one of a group, too.
    if (none || (address->bytes[0] & kGroup) != 0)
        return command::answer::Failed;
    return message.p1;
}

constexpr FactoryStep kSteps[] = {
    {command::FactoryMacTest, 0, command::FactoryMacReport, "ListItem_FactoryMac", nullptr, &isOne,
     nullptr, 0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime, "mac", &addressOf},
};

}  // namespace

void f_macRegTest::built() {
    setSteps(kSteps);
}
