#pragma once

#include <QList>
#include <QString>

#include "cloud/parameters.h"

/// Orders to renew the firmware, kept on the disk from their acceptance until they have been
/// carried out or have failed, so that they outlive the process. A file each. Any thread.
namespace FirmwareOrders {

struct Kept {
    int number = 0;
    int handedOver = 0;  // times that the controller has been told of its archive
    QString address;
};

/// Orders that may wait.
constexpr int kMost = 16;

/// Keeps @p order and gives it its number; false when too many wait or the disk does not take it.
bool keep(FR44_Parameter& order);
/// Notes that the controller has been told of the archive of the order @p number, which it has been
/// @p before times until now.
void setHandedOver(int number, int before);
void remove(int number);
/// All that there are, in the order in which they were accepted.
QList<Kept> kept();

}  // namespace FirmwareOrders
