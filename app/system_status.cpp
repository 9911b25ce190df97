#include "app/system_status.h"

#include <utility>

#include "link/device_records.h"

namespace {

/// Value of the operation field and of the other yes/no fields of the settings.
constexpr int kInUse = 1;

struct Fault {
    std::uint32_t bit;
    const char* key;
};

constexpr Fault kFaults[] = {
    {SelfCheckFault::kTouchPanel, "Popup_ErrCtouch"},
    {SelfCheckFault::kNetwork, "Popup_ErrNetwork"},
    {SelfCheckFault::kTamper, "Popup_ErrTamper"},
};

}  // namespace

SystemStatus::SystemStatus(std::function<_gui_menu_()> settings,
                           std::function<bool()> serviceReachable, QObject* parent)
    : QObject(parent),
      settings_(std::move(settings)),
      serviceReachable_(std::move(serviceReachable)) {
    selfCheckTimer_.setSingleShot(true);
    connect(&selfCheckTimer_, &QTimer::timeout, this, [this] {
        // Another attempt at the service is no news of the faults.
        if (std::exchange(selfCheckNew_, false))
            evaluateSelfCheck();
        else
            seekService();
    });
}

void SystemStatus::setStatus(int status) {
    status_ = status;
    int mode = 0;
    if (status >= 1 && status <= 4)
        mode = settings_().setup.operation == Operation::Meals
                   ? static_cast<int>(WorkMode::Breakfast) + status - 1
                   : status;
    workMode_ = static_cast<WorkMode>(mode);
}

void SystemStatus::setSelfCheck(std::uint32_t word) {
    selfCheck_ = word;
    selfCheckNew_ = true;
    selfCheckTimer_.start(1);
}

QStringList SystemStatus::faultKeys(std::uint32_t word) {
    QStringList keys;
    for (const Fault& fault : kFaults) {
        if ((word & fault.bit) != 0)
            keys.append(QLatin1String(fault.key));
    }
    return keys;
}

void SystemStatus::evaluateSelfCheck() {
    emit faultsChanged(faultKeys(selfCheck_));
    seekService();
}

void SystemStatus::seekService() {
    if (settings_().network.useManager != kInUse)
        return;
    selfCheckTimer_.stop();
    if (serviceReachable_()) {
        emit connectionCheckWanted();
    } else {
        emit connectWanted();
        selfCheckTimer_.start(kRetryInterval);
    }
}
