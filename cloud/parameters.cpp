#include "cloud/parameters.h"

#include <QRegularExpression>
#include <cstring>

#include "link/device_message.h"

std::optional<QDateTime> FR01_Parameter::moment() const {
    static const QRegularExpression dateForm(
        QStringLiteral("^(20[0-9]{2})-([0-9]{1,2})-([0-9]{1,2})\\z"));
    static const QRegularExpression timeForm(
        QStringLiteral("^([0-9]{1,2}):([0-9]{1,2}):([0-9]{1,2})\\z"));
    const QRegularExpressionMatch dates = dateForm.match(date);
    const QRegularExpressionMatch times = timeForm.match(time);
    const auto number = [](const QRegularExpressionMatch& match, int part) {
        return match.captured(part).toInt();
    };
    const QDate day(number(dates, 1), number(dates, 2), number(dates, 3));
    const QTime clock(number(times, 1), number(times, 2), number(times, 3));
    if (!dates.hasMatch() || !times.hasMatch() || !day.isValid() || !clock.isValid())
        return std::nullopt;
    return QDateTime(day, clock, Qt::UTC);
}

void Device_Setup_Parameter::applyTo(_gui_menu_& settings) const {
    auto* const record = reinterpret_cast<std::uint8_t*>(&settings);
    for (const Byte& byte : bytes)
        record[byte.offset] = byte.value;
    if (deviceNumber)
        settings.setup.deviceNumber = *deviceNumber;
    if (adminPassword)
        setFieldText(settings.setup.adminPassword, *adminPassword);
    AddressBlock& own = settings.network.own;
    if (managerAddress)
        std::memcpy(own.managerAddress, managerAddress->data(), sizeof own.managerAddress);
    if (managerPort)
        own.managerPort = *managerPort;
}
