#include "cloud/firmware_update.h"

#include <QFile>
#include <QUrl>
#include <cstdio>
#include <utility>

#include "cloud/cloud_log.h"
#include "cloud/disk.h"
#include "cloud/download_manager.h"
#include "cloud/firmware_orders.h"
#include "cloud/management_host.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

constexpr int kLookInterval = 2000;  // milliseconds

}  // namespace

FirmwareUpdate::FirmwareUpdate(DownloadManager& downloads, ManagementHost& host)
    : downloads_(downloads), host_(host) {
    timer_.setInterval(kLookInterval);
    connect(&timer_, &QTimer::timeout, this, &FirmwareUpdate::look);
}

void FirmwareUpdate::resume() {
    downloads_.removeLeftovers();
    const QList<FirmwareOrders::Kept> orders = FirmwareOrders::kept();
    if (orders.isEmpty())
        return;
    for (const FirmwareOrders::Kept& each : orders) {
        const bool fetched = each.handedOver > 0;
        if (fetched ? each.handedOver >= kMostHandOvers || unanswered_ ||
                          !QFile::exists(downloads_.getArchivePath())
                    : each.address.isEmpty()) {
            FirmwareOrders::remove(each.number);
        } else if (fetched) {
            FirmwareOrders::setHandedOver(each.number, each.handedOver);
            handedOver_ = each.number;
            unanswered_ = true;
        } else {
            FR44_Parameter parameter;
            parameter.address = each.address;
            parameter.number = each.number;
            order(parameter);
        }
    }
    booting_ = true;
    update();
    QTimer::singleShot(resumeDelay_, this, [this] {
        booting_ = false;
        update();
    });
}

void FirmwareUpdate::order(const FR44_Parameter& order) {
    numbers_.append(order.number);
    downloads_.append(QUrl(order.address));
}

void FirmwareUpdate::downloaded() {
    const bool whole = std::rename(QFile::encodeName(downloads_.getFilePath()).constData(),
                                   QFile::encodeName(downloads_.getArchivePath()).constData()) == 0;
    // Of several addresses the last one's archive is what there is; without one all have failed.
    handedOver_ = whole && !numbers_.isEmpty() ? numbers_.takeLast() : 0;
    // In this order on the disk: an order that has been handed over and has no archive is done.
    if (whole)
        Disk::syncFolder(downloads_.getBasePath());
    if (handedOver_ != 0)
        FirmwareOrders::setHandedOver(handedOver_, 0);
    for (const int number : std::exchange(numbers_, {}))
        FirmwareOrders::remove(number);
    unanswered_ = true;
    toldOn_ = 0;
    update();
}

void FirmwareUpdate::look() {
    const quint32 connection = host_.linkProgress().connection;
    if (connection == 0)
        return;
    if (connection != toldOn_) {
        host_.SendCommand(command::UpdateFirmware, command::firmware::Downloaded, 0);
        toldOn_ = connection;
        told_.start();
    } else if (told_.hasExpired(answerTime_)) {
        qCWarning(cloudLog, "the controller does not answer for the firmware");
        answered();
    }
}

void FirmwareUpdate::answered() {
    if (toldOn_ == 0)
        return;
    toldOn_ = 0;
    unanswered_ = false;
    FirmwareOrders::remove(std::exchange(handedOver_, 0));
    update();
}

void FirmwareUpdate::update() {
    // A download begins with the removal of the archive before it, which the controller may be
    // about to take.
    downloads_.hold(unanswered_ || booting_);
    if (!unanswered_ || booting_) {
        timer_.stop();
    } else if (!timer_.isActive()) {
        timer_.start();
        look();
    }
}
