#include "screens/information/info_reader_window.h"

#include <QFile>
#include <QLocale>
#include <QStorageInfo>

#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "base/device_paths.h"
#include "base/ipv4.h"
#include "base/version.h"
#include "cloud/network_helper.h"
#include "link/device_message.h"

namespace {

/// Milliseconds between two looks at what changes by itself: the network and the disk.
constexpr int kPeriod = 5000;

/// In the order of the form's captions.
enum Fact { Number, Serial, Mac, Address, Mask, Gateway, Dns };
enum Version { Firmware, Kernel, MainBoard, IoBoard, Program, Since, Space };

QString known(const QString& address) {
    return address.isEmpty() || address == QLatin1String("0.0.0.0") ? QStringLiteral("-") : address;
}

/// What the kernel knows of the network, or else the @p set one, which with DHCP never holds.
QString inForce(const QString& actual, const std::uint8_t (&set)[4], bool dhcp) {
    return known(actual.isEmpty() && !dhcp ? Ipv4::dotted(set) : actual);
}

QString macText() {
    QString text = NetworkHelper::getMacAddress(QLatin1String(NetworkHelper::kInterface));
    for (int i = text.size() - 2; i > 0; i -= 2)
        text.insert(i, QLatin1Char(':'));
    return text;
}

}  // namespace

Info_ReaderWindow::Info_ReaderWindow(QWidget* parent, const QString& title)
    : FormScreen(parent, title) {
    running_.start();
    timer_.setInterval(kPeriod);
    connect(&timer_, &QTimer::timeout, this, &Info_ReaderWindow::showFacts);
}

void Info_ReaderWindow::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->list->rewind();
    showFacts();
}

void Info_ReaderWindow::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    showFacts();
}

void Info_ReaderWindow::scriptsApplied() {
    FormScreen::scriptsApplied();
    showFacts();
}

void Info_ReaderWindow::showFacts() {
    timer_.start();
    const _gui_menu_ record = shell()->menuRecord();
    const AddressBlock& own = record.network.own;
    const bool dhcp = own.dhcp == 1;
    const QString interface = QLatin1String(NetworkHelper::kInterface);
    ui_->facts->setValue(Number, QString::number(record.setup.deviceNumber));
    ui_->facts->setValue(Serial, fieldText(record.serial));
    ui_->facts->setValue(Mac, known(macText()));
    ui_->facts->setValue(Address,
                         inForce(NetworkHelper::getIPAddress(interface), own.address, dhcp));
    ui_->facts->setValue(Mask, inForce(NetworkHelper::getMask(interface), own.mask, dhcp));
    ui_->facts->setValue(Gateway, inForce(NetworkHelper::getGateway(interface), own.gateway, dhcp));
    ui_->facts->setValue(Dns, inForce(NetworkHelper::getNameServer(), own.dns, dhcp));

    const QLocale locale(shell()->getScript(QStringLiteral("Arg_Locale")).script);
    const QDateTime since = Clock::now().addMSecs(-running_.elapsed());
    ui_->versions->setValue(Firmware, fieldText(record.firmwareVersion));
    ui_->versions->setValue(Kernel, fieldText(record.kernelVersion));
    ui_->versions->setValue(MainBoard, fieldText(record.mainBoardVersion));
    ui_->versions->setValue(IoBoard, fieldText(record.ioBoardVersion));
    ui_->versions->setValue(Program, QString::fromLatin1(programVersion()));
    ui_->versions->setValue(Since, since.toString(QStringLiteral("yyyy-MM-dd hh:mm")));
    const QStorageInfo disk(DevicePaths::at(QStringLiteral("/mnt/data")));
    ui_->versions->setValue(
        Space, disk.isValid() ? locale.formattedDataSize(disk.bytesAvailable()) : QString());
}
