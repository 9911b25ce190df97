// Changes the machine's address as the terminal does, and ends when that is done:
//   network_change dhcp
//   network_change ADDRESS MASK GATEWAY DNS
#include <QCoreApplication>
#include <QHostAddress>
#include <QProcess>
#include <QTimer>
#include <QtEndian>

#include "app/network_setup.h"
#include "link/device_records.h"

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    AddressBlock own{};
    own.dhcp = argc == 2 ? 1 : 0;
    std::uint8_t(*const fields[])[4] = {&own.address, &own.mask, &own.gateway, &own.dns};
    for (int i = 1; i < argc && argc == 5; ++i)
        qToBigEndian(QHostAddress(QString::fromLatin1(argv[i])).toIPv4Address(), *fields[i - 1]);
    AddressBlock before{};
    before.dhcp = own.dhcp == 1 ? 0 : 1;
    NetworkSetup::apply(own, before);
    QTimer done;
    QObject::connect(&done, &QTimer::timeout, &application, [&application] {
        if (application.findChildren<QProcess*>().isEmpty())
            QCoreApplication::quit();
    });
    done.start(100);
    return QCoreApplication::exec();
}
