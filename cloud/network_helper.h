#pragma once

#include <QString>

/// The addresses of this machine's network interfaces, as the kernel knows them. Empty texts where
/// there is no such interface or it has no such address. Any thread.
namespace NetworkHelper {

/// The terminal's one network interface.
constexpr const char* kInterface = "eth0";
/// Where the system keeps the addresses of its DNS servers.
constexpr const char* kNameServers = "/etc/resolv.conf";

/// IPv4 address and mask of an interface, dotted decimal.
QString getIPAddress(const QString& interface);
QString getMask(const QString& interface);
/// Hardware address of an interface: twelve upper-case hexadecimal digits without separators.
QString getMacAddress(const QString& interface);
/// Whether there is a signal on the cable of an interface.
bool hasCable(const QString& interface);
/// The default gateway that is reached through an interface, dotted decimal.
QString getGateway(const QString& interface);
/// The address of the first DNS server.
QString getNameServer();

}  // namespace NetworkHelper
