#include <QDirIterator>

#include "base/device_paths.h"
#include "cloud/command_folder.h"
#include "cloud/firmware_orders.h"
#include "fuzz_root.h"

namespace {

constexpr char kImages[] = "/mnt/data/Images";
constexpr char kOrders[] = "/mnt/data/firmware_orders";

bool same(const DoReceiveUserData& one, const DoReceiveUserData& other) {
    return one.registTime == other.registTime && one.authType == other.authType &&
           one.name == other.name && one.cardTemplate == other.cardTemplate &&
           one.templateFile == other.templateFile && one.cardNo == other.cardNo;
}

void takeFolder(const QString& name, const QByteArray& info) {
    const QString path = CommandFolder::directory() + name;
    if (!QDir().mkdir(path))
        return;
    const auto command = CommandFolder::named(name);
    FuzzRoot::write(path + QStringLiteral("/a.info"), info);
    FuzzRoot::write(path + QStringLiteral("/b.jpg"), "picture");
    if (!command)
        return;
    demand(command->path() == path && !command->cardNo.contains(QLatin1Char('/')));
    const auto user = CommandFolder::takeUser(*command);
    if (user) {
        demand(user->cardNo == command->cardNo &&
               user->picture == command->cardNo + QStringLiteral(".jpg"));
        // What has been read can be written, and is read again as it was.
        CommandFolder writer([] { return QDateTime(QDate(2026, 3, 9), QTime(8, 52)); });
        demand(CommandFolder::remove(*command) && writer.writeAdd(*user, {}));
        QDirIterator folders(CommandFolder::directory(), QDir::Dirs | QDir::NoDotAndDotDot);
        const auto again = CommandFolder::named(QFileInfo(folders.next()).fileName());
        const auto readAgain = CommandFolder::takeUser(again.value());
        demand(readAgain && same(*user, *readAgain));
    }
    CommandFolder::removeUnfinished();
}

void takeOrder(const QString& name, const QByteArray& content) {
    FuzzRoot::write(DevicePaths::at(QLatin1String(kOrders)) + QLatin1Char('/') + name, content);
    const auto orders = FirmwareOrders::kept();
    FR44_Parameter fresh;
    fresh.address = QStringLiteral("http://10.0.0.1/fw");
    if (!orders.isEmpty()) {
        demand(orders.first().number > 0);
        FirmwareOrders::setHandedOver(orders.first().number, orders.first().handedOver);
    }
    // What is accepted is found again.
    if (!FirmwareOrders::keep(fresh))
        return;
    demand(fresh.number > 0 && FirmwareOrders::kept().last().address == fresh.address);
    FirmwareOrders::remove(fresh.number);
}

}  // namespace

// A name, a line's end, and what the file holds: of a command's folder, or behind a '!' of an order
// to renew the firmware.
void take(std::uint8_t first, const QByteArray& rest) {
    static const FuzzRoot root;
    const QByteArray input = static_cast<char>(first) + rest;
    const int end = input.indexOf('\n');
    QByteArray name = input.left(end);
    const bool order = name.startsWith('!');
    name = name.mid(order ? 1 : 0).replace('/', '_').replace('\0', '_');
    if (end < 0 || name.isEmpty() || name.startsWith('.'))
        return;
    root.clear(kImages);
    root.clear(kOrders);
    (order ? takeOrder : takeFolder)(QFile::decodeName(name), input.mid(end + 1));
}
