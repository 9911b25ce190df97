#include "screens/factory/f_card_test.h"

#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

struct CardNumber {
    char text[16];
};

QString cardNumber(const DeviceMessage& message) {
    const auto number = message.record<CardNumber>();
    return number ? fieldText(number->text).simplified() : QString();
}

/// A card that was read has a number.
std::optional<double> cardRead(const DeviceMessage& message, const FactoryStep&) {
    if (message.p1 == command::answer::Done && cardNumber(message).isEmpty())
        return command::answer::Failed;
    return message.p1;
}

constexpr FactoryStep kSteps[] = {
    {command::FactoryCardAntennaTest, 0, command::FactoryCardAntennaReport,
     "ListItem_FactoryAntenna", nullptr, &factory_read::result, nullptr, 0, 0,
     FactoryStep::ByFirstValue, FactoryStep::kAnswerTime, "antenna"},
    {command::FactoryCardTest, 0, command::FactoryCardReport, "ListItem_FactoryCard",
     "Info_FactoryCard", &cardRead, nullptr, 0, 0, FactoryStep::ByFirstValue,
     FactoryStep::kAnswerTime, "card", &cardNumber},
};

}  // namespace

void f_cardTest::built() {
    setSteps(kSteps);
}
