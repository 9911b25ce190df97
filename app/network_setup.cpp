#include "app/network_setup.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QPointer>
#include <QProcess>
#include <QSaveFile>
#include <QtEndian>
#include <cstddef>
#include <cstring>
#include <utility>

#include "base/device_paths.h"
#include "base/ipv4.h"
#include "cloud/network_helper.h"
#include "link/device_records.h"

Q_LOGGING_CATEGORY(networkLog, "zel.app.network", QtInfoMsg)

namespace {

constexpr std::uint8_t kLoopback = 127;
constexpr int kLongestPrefix = 30;

const QString kInterface = QLatin1String(NetworkHelper::kInterface);

quint32 number(const std::uint8_t (&address)[4]) {
    return qFromBigEndian<quint32>(address);
}

/// The mask's length in bits, -1 when its ones do not stand together.
int prefixLength(const std::uint8_t (&mask)[4]) {
    const quint32 bits = number(mask);
    const quint32 holes = ~bits;
    if ((holes & (holes + 1)) != 0)
        return -1;
    return static_cast<int>(qPopulationCount(bits));
}

/// Whether it can be the address of a machine in a net.
bool isHost(quint32 address) {
    const auto first = static_cast<std::uint8_t>(address >> 24);
    return first != kLoopback && Ipv4::isMachine(first);
}

/// Runs what is in the list, one after the other, and ends with the program.
class AddressChange : public QObject {
 public:
    using QObject::QObject;

    void append(const QVector<QStringList>& commands, const QString& nameServer) {
        waiting_ += commands;
        nameServer_ = nameServer;
        if (process_ == nullptr)
            next();
    }

 private:
    void next() {
        if (process_ != nullptr)
            process_->deleteLater();
        process_ = nullptr;
        if (waiting_.isEmpty()) {
            writeNameServer();
            return;
        }
        QStringList arguments = waiting_.takeFirst();
        const QString line = arguments.join(QLatin1Char(' '));
        const QString program = arguments.takeFirst();
        process_ = new QProcess(this);
        connect(process_, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
                [this, line](int code) {
                    if (code != 0)
                        qCWarning(networkLog, "%s ended with %d: %s", qPrintable(line), code,
                                  process_->readAllStandardError().left(200).constData());
                    next();
                });
        connect(process_, &QProcess::errorOccurred, this, [this, line](QProcess::ProcessError why) {
            if (why != QProcess::FailedToStart)
                return;
            qCWarning(networkLog, "%s cannot be started", qPrintable(line));
            next();
        });
        process_->start(program, arguments);
    }

    void writeNameServer() {
        const QString server = std::exchange(nameServer_, QString());
        if (server.isEmpty())
            return;
        const QString path = DevicePaths::at(QLatin1String(NetworkHelper::kNameServers));
        const QByteArray line = "nameserver " + server.toLatin1() + "\n";
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && file.write(line) == line.size() && file.commit())
            return;
        // As a service the program may write this file, but nothing beside it in its folder.
        QFile inPlace(path);
        if (!inPlace.open(QIODevice::WriteOnly) || inPlace.write(line) != line.size() ||
            !inPlace.flush())
            qCWarning(networkLog, "the DNS server could not be set: %s",
                      qPrintable(inPlace.errorString()));
    }

    QVector<QStringList> waiting_;
    QString nameServer_;
    QProcess* process_ = nullptr;
};

}  // namespace

namespace NetworkSetup {

using Ipv4::dotted;

Fault check(const AddressBlock& own) {
    if (own.dhcp == 1)
        return Fault::None;
    const quint32 address = number(own.address);
    const quint32 mask = number(own.mask);
    const int prefix = prefixLength(own.mask);
    if (address == 0 || ~address == 0)
        return Fault::AddressZeroOnes;
    if (!isHost(address))
        return Fault::Address;
    if (prefix < 1 || prefix > kLongestPrefix)
        return Fault::Mask;
    if ((address & ~mask) == 0 || (address | mask) == ~quint32{0})
        return Fault::AddressReserved;
    if (const quint32 gateway = number(own.gateway)) {
        if (!isHost(gateway))
            return Fault::Gateway;
        if (gateway == address || ((gateway ^ address) & mask) != 0 || (gateway & ~mask) == 0 ||
            (gateway | mask) == ~quint32{0})
            return Fault::GatewayOutside;
    }
    if (number(own.dns) != 0 && !Ipv4::isMachine(own.dns[0]))
        return Fault::Dns;
    return Fault::None;
}

QVector<QStringList> commands(const AddressBlock& own) {
    if (check(own) != Fault::None)
        return {};
    const QString ip = QStringLiteral("ip");
    const QString dev = QStringLiteral("dev");
    if (own.dhcp == 1)
        return {{QStringLiteral("udhcpc"), QStringLiteral("-n"), QStringLiteral("-q"),
                 QStringLiteral("-i"), kInterface}};
    const QString address =
        QStringLiteral("%1/%2").arg(dotted(own.address)).arg(prefixLength(own.mask));
    QVector<QStringList> lines{
        {ip, QStringLiteral("addr"), QStringLiteral("flush"), dev, kInterface},
        {ip, QStringLiteral("addr"), QStringLiteral("add"), address, dev, kInterface}};
    if (number(own.gateway) != 0)
        lines.append({ip, QStringLiteral("route"), QStringLiteral("replace"),
                      QStringLiteral("default"), QStringLiteral("via"), dotted(own.gateway)});
    return lines;
}

void apply(const AddressBlock& own, const AddressBlock& before) {
    if (std::memcmp(&own, &before, offsetof(AddressBlock, managerAddress)) == 0) {
        qCInfo(networkLog, "the machine's address stays as it is");
        return;
    }
    const QVector<QStringList> lines = commands(own);
    const QString nameServer = own.dhcp != 1 && number(own.dns) != 0 ? dotted(own.dns) : QString();
    if (lines.isEmpty()) {
        qCWarning(networkLog, "an address that cannot be set");
        return;
    }
    if (!DevicePaths::root().isEmpty()) {
        QStringList words;
        for (const QStringList& line : lines)
            words.append(line.join(QLatin1Char(' ')));
        if (!nameServer.isEmpty())
            words.append(QStringLiteral("nameserver ") + nameServer);
        qCInfo(networkLog, "not run here: %s", qPrintable(words.join(QLatin1String("; "))));
        return;
    }
    static QPointer<AddressChange> change;
    if (!change)
        change = new AddressChange(QCoreApplication::instance());
    change->append(lines, nameServer);
}

}  // namespace NetworkSetup
