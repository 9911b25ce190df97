#include "app/network_setup.h"

#include <QLoggingCategory>
#include <QtEndian>
#include <cstddef>
#include <cstring>

#include "base/device_paths.h"
#include "cloud/network_helper.h"
#include "link/device_records.h"

Q_LOGGING_CATEGORY(networkLog, "zel.app.network", QtInfoMsg)

namespace {

/// The mask's length in bits, -1 when its ones do not stand together.
int prefixLength(const std::uint8_t (&mask)[4]) {
    const auto bits = qFromBigEndian<quint32>(mask);
    const quint32 holes = ~bits;
    if ((holes & (holes + 1)) != 0)
        return -1;
    return static_cast<int>(qPopulationCount(bits));
}

bool isZero(const std::uint8_t (&address)[4]) {
    return qFromBigEndian<quint32>(address) == 0;
}

}  // namespace

namespace NetworkSetup {

using NetworkHelper::dotted;

QStringList commands(const AddressBlock& own) {
    if (own.dhcp == 1)
        return {QStringLiteral("udhcpc -n -q -i eth0")};
    const int prefix = prefixLength(own.mask);
    if (isZero(own.address) || prefix <= 0)
        return {};
    QStringList lines{
        QStringLiteral("ip addr flush dev eth0"),
        QStringLiteral("ip addr add %1/%2 dev eth0").arg(dotted(own.address)).arg(prefix)};
    if (!isZero(own.gateway))
        lines.append(QStringLiteral("ip route replace default via %1").arg(dotted(own.gateway)));
    if (!isZero(own.dns))
        lines.append(QStringLiteral("echo nameserver %1 > /etc/resolv.conf").arg(dotted(own.dns)));
    return lines;
}

void apply(const AddressBlock& own, const AddressBlock& before) {
    if (std::memcmp(&own, &before, offsetof(AddressBlock, managerAddress)) == 0) {
        qCInfo(networkLog, "the machine's address stays as it is");
        return;
    }
    const QString lines = commands(own).join(QLatin1String("; "));
    if (lines.isEmpty())
        qCWarning(networkLog, "an address that cannot be set");
    else if (!DevicePaths::root().isEmpty())
        qCInfo(networkLog, "not run here: %s", qPrintable(lines));
    else
        DevicePaths::runShell(QStringLiteral("(%1) &").arg(lines));  // DHCP may take its time
}

}  // namespace NetworkSetup
