#include "cloud/firmware_orders.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>
#include <mutex>

#include "base/device_paths.h"
#include "cloud/cloud_log.h"
#include "cloud/disk.h"

namespace {

constexpr qint64 kMaxAddress = 4096;
/// The largest number that a file's name can have.
constexpr int kMaxNumber = 999999999;

/// The REST server's thread writes, the GUI thread does the rest.
std::mutex lock;

QString folder() {
    return DevicePaths::at(QStringLiteral("/mnt/data/firmware_orders/"));
}

QString pathOf(int number, int handedOver) {
    return folder() + QStringLiteral("%1.%2").arg(number).arg(handedOver);
}

QString addressIn(const QString& path) {
    QFile file(path);
    if (file.size() > kMaxAddress || !file.open(QIODevice::ReadOnly))
        return {};
    const QString address = QString::fromUtf8(file.readAll());
    return QUrl(address).scheme() == QLatin1String("http") ? address : QString();
}

QList<FirmwareOrders::Kept> list() {
    static const QRegularExpression form(QStringLiteral("^([1-9][0-9]{0,8})\\.([0-9])\\z"));
    QList<FirmwareOrders::Kept> orders;
    for (const QString& name : QDir(folder()).entryList(QDir::Files | QDir::NoSymLinks)) {
        const QRegularExpressionMatch match = form.match(name);
        if (match.hasMatch())
            orders.append(
                {match.captured(1).toInt(), match.captured(2).toInt(), addressIn(folder() + name)});
    }
    std::sort(orders.begin(), orders.end(),
              [](const auto& one, const auto& other) { return one.number < other.number; });
    return orders;
}

}  // namespace

namespace FirmwareOrders {

bool keep(FR44_Parameter& order) {
    const std::lock_guard<std::mutex> guard(lock);
    const QList<Kept> before = list();
    if (before.size() >= kMost || (!before.isEmpty() && before.last().number == kMaxNumber) ||
        !Disk::makeFolder(folder()))
        return false;
    const int number = before.isEmpty() ? 1 : before.last().number + 1;
    const QString fresh = folder() + QStringLiteral("new");
    QFile::remove(fresh);
    if (!Disk::writeNew(fresh, order.address.toUtf8()) ||
        !QFile::rename(fresh, pathOf(number, 0)) || !Disk::syncFolder(folder()))
        return false;
    order.number = number;
    return true;
}

void setHandedOver(int number, int before) {
    const std::lock_guard<std::mutex> guard(lock);
    if (!QFile::rename(pathOf(number, before), pathOf(number, before + 1)) ||
        !Disk::syncFolder(folder()))
        qCWarning(cloudLog, "firmware order %d is not on the disk", number);
}

void remove(int number) {
    const std::lock_guard<std::mutex> guard(lock);
    for (const Kept& each : list()) {
        if (each.number == number)
            QFile::remove(pathOf(number, each.handedOver));
    }
}

QList<Kept> kept() {
    const std::lock_guard<std::mutex> guard(lock);
    return list();
}

}  // namespace FirmwareOrders
