#include "cloud/firmware_update.h"

#include <QFile>
#include <QTimer>
#include <QUrl>
#include <cstdio>
#include <utility>

#include "cloud/cloud_log.h"
#include "cloud/download_manager.h"
#include "cloud/firmware_orders.h"
#include "cloud/management_host.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

FirmwareUpdate::FirmwareUpdate(DownloadManager& downloads, ManagementHost& host)
    : downloads_(downloads), host_(host) {}

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
    updateHold();
    QTimer::singleShot(resumeDelay_, this, [this] {
        booting_ = false;
        updateHold();
        look();
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
    if (handedOver_ != 0)
        FirmwareOrders::setHandedOver(handedOver_, 0);
    for (const int number : std::exchange(numbers_, {}))
        FirmwareOrders::remove(number);
    unanswered_ = true;
    toldOn_ = 0;
    updateHold();
    look();
}

void FirmwareUpdate::handOver() {
    host_.SendCommand(command::UpdateFirmware, command::firmware::Downloaded, 0);
    toldOn_ = host_.linkProgress().connection;
    told_.start();
}

void FirmwareUpdate::look() {
    const quint32 connection = host_.linkProgress().connection;
    if (!unanswered_ || booting_ || connection == 0)
        return;
    if (connection != toldOn_) {
        handOver();
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
    updateHold();
}

void FirmwareUpdate::updateHold() {
    // A download begins with the removal of the archive before it, which the controller may be
    // about to take.
    downloads_.hold(unanswered_ || booting_);
}
