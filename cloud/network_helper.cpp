#include "cloud/network_helper.h"

#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <array>
#include <cstring>
#include <optional>

#include "base/device_paths.h"
#include "base/ipv4.h"

namespace {

class Socket {
 public:
    Socket(int domain, int type, int protocol)
        : fd_(::socket(domain, type | SOCK_CLOEXEC, protocol)) {}
    ~Socket() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    int fd() const { return fd_; }

 private:
    int fd_;
};

std::optional<ifreq> ask(const QString& interface, unsigned long what) {
    const Socket socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request{};
    const QByteArray name = interface.toLatin1();
    if (socket.fd() < 0 || name.size() >= IFNAMSIZ)
        return std::nullopt;
    std::memcpy(request.ifr_name, name.constData(), static_cast<std::size_t>(name.size()));
    if (::ioctl(socket.fd(), what, &request) != 0)
        return std::nullopt;
    return request;
}

QString textOf(const in_addr& address) {
    std::uint8_t bytes[4];
    std::memcpy(bytes, &address, sizeof bytes);
    return Ipv4::dotted(bytes);
}

QString dottedOf(const std::optional<ifreq>& answer) {
    if (!answer || answer->ifr_addr.sa_family != AF_INET)
        return {};
    sockaddr_in address{};
    std::memcpy(&address, &answer->ifr_addr, sizeof address);
    return textOf(address.sin_addr);
}

/// The gateway of one route message, if it is a default route through interface number @p index.
std::optional<in_addr> defaultGateway(const nlmsghdr* message, int index) {
    const auto* route = static_cast<const rtmsg*>(NLMSG_DATA(message));
    if (route->rtm_family != AF_INET || route->rtm_dst_len != 0 ||
        route->rtm_table != RT_TABLE_MAIN)
        return std::nullopt;
    std::optional<in_addr> gateway;
    bool throughInterface = false;
    auto length = static_cast<int>(RTM_PAYLOAD(message));
    for (const rtattr* attribute = RTM_RTA(route); RTA_OK(attribute, length);
         attribute = RTA_NEXT(attribute, length)) {
        if (attribute->rta_type == RTA_GATEWAY && RTA_PAYLOAD(attribute) == sizeof(in_addr)) {
            gateway.emplace();
            std::memcpy(&*gateway, RTA_DATA(attribute), sizeof(in_addr));
        } else if (attribute->rta_type == RTA_OIF && RTA_PAYLOAD(attribute) == sizeof(int)) {
            int through = 0;
            std::memcpy(&through, RTA_DATA(attribute), sizeof through);
            throughInterface = through == index;
        }
    }
    return throughInterface ? gateway : std::nullopt;
}

}  // namespace

namespace NetworkHelper {

QString getIPAddress(const QString& interface) {
    return dottedOf(ask(interface, SIOCGIFADDR));
}

QString getMask(const QString& interface) {
    return dottedOf(ask(interface, SIOCGIFNETMASK));
}

bool hasCable(const QString& interface) {
    QFile carrier(DevicePaths::at(QStringLiteral("/sys/class/net/%1/carrier").arg(interface)));
    return carrier.open(QIODevice::ReadOnly) && carrier.read(1) == "1";
}

QString getNameServer() {
    constexpr qint64 kLongest = 4096;
    QFile file(DevicePaths::at(QLatin1String(kNameServers)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QList<QByteArray> lines = file.read(kLongest).split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() > 1 && words.first() == "nameserver")
            return QString::fromLatin1(words.at(1));
    }
    return {};
}

QString getMacAddress(const QString& interface) {
    const std::optional<ifreq> answer = ask(interface, SIOCGIFHWADDR);
    if (!answer)
        return {};
    return QString::fromLatin1(QByteArray(answer->ifr_hwaddr.sa_data, 6).toHex().toUpper());
}

QString getGateway(const QString& interface) {
    const auto index = static_cast<int>(::if_nametoindex(interface.toLatin1().constData()));
    const Socket socket(AF_NETLINK, SOCK_RAW, NETLINK_ROUTE);
    struct {
        nlmsghdr header;
        rtmsg route;
    } request{};
    request.header.nlmsg_len = NLMSG_LENGTH(sizeof(rtmsg));
    request.header.nlmsg_type = RTM_GETROUTE;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.route.rtm_family = AF_INET;
    if (index == 0 || socket.fd() < 0 ||
        ::send(socket.fd(), &request, request.header.nlmsg_len, 0) < 0)
        return {};

    alignas(nlmsghdr) std::array<char, 16384> buffer;
    for (;;) {
        const ssize_t got = ::recv(socket.fd(), buffer.data(), buffer.size(), 0);
        if (got <= 0)
            return {};
        auto length = static_cast<unsigned int>(got);
        for (const auto* message =
                 static_cast<const nlmsghdr*>(static_cast<const void*>(buffer.data()));
             NLMSG_OK(message, length); message = NLMSG_NEXT(message, length)) {
            if (message->nlmsg_type != RTM_NEWROUTE)
                return {};  // the end of the list, or an error
            if (const auto gateway = defaultGateway(message, index))
                return textOf(*gateway);
        }
    }
}

}  // namespace NetworkHelper
