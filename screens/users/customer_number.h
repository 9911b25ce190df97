#pragma once

#include <QByteArray>
#include <QString>
#include <algorithm>

#include "link/device_message.h"
#include "link/device_records.h"

/// The number by which customers are known: eleven digits, 0 to 9.
namespace CustomerNumber {

constexpr int kDigits = 11;

inline bool isValid(const QString& number) {
    return number.size() == kDigits && std::all_of(number.begin(), number.end(), [](QChar digit) {
               return digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
           });
}

/// The payload as a number, up to a zero; whatever else it holds makes it an invalid one.
inline QString read(const DeviceMessage& message) {
    return QString::fromUtf8(message.payload,
                             static_cast<int>(qstrnlen(message.payload, message.length)));
}

/// Gives @p user, who is stored under it, the number.
inline void set(_gui_user_& user, const QString& number) {
    setFieldText(user.customerId, number);
    setFieldText(user.userId, number);
}

}  // namespace CustomerNumber
