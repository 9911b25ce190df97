#include "base/ipv4.h"

#include <QRegularExpression>
#include <QStringList>

namespace Ipv4 {

QString dotted(const std::uint8_t (&address)[4]) {
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address[0])
        .arg(address[1])
        .arg(address[2])
        .arg(address[3]);
}

std::optional<Address> read(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^[0-9]{1,3}(\\.[0-9]{1,3}){3}\\z"));
    if (!form.match(text).hasMatch())
        return std::nullopt;
    const QStringList numbers = text.split(QLatin1Char('.'));
    Address address{};
    for (std::size_t i = 0; i < address.size(); ++i) {
        const int number = numbers.at(static_cast<int>(i)).toInt();
        if (number > 0xFF)
            return std::nullopt;
        address[i] = static_cast<std::uint8_t>(number);
    }
    return address;
}

bool isMachine(std::uint8_t number) {
    constexpr std::uint8_t kFirstOfMany = 224;
    return number != 0 && number < kFirstOfMany;
}

std::optional<Address> readMachine(const QString& text) {
    const auto address = read(text);
    return address && isMachine(address->front()) ? address : std::nullopt;
}

}  // namespace Ipv4
