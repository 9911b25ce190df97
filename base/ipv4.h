#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

/// IPv4 addresses: their four numbers, and these in dotted decimal. Any thread.
namespace Ipv4 {

using Address = std::array<std::uint8_t, 4>;

/// @p address in dotted decimal.
QString dotted(const std::uint8_t (&address)[4]);

/// The address that @p text is: four numbers up to 255 of at most three digits, and nothing else.
std::optional<Address> read(const QString& text);

/// Whether an address that begins with @p number is a machine's, be it this one: neither nobody's
/// (0) nor one of many (224 and above).
bool isMachine(std::uint8_t number);

/// The address that @p text is, if it is a machine's.
std::optional<Address> readMachine(const QString& text);

}  // namespace Ipv4
