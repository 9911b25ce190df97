#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>

#include "cloud/decoded.h"
#include "cloud/parameters.h"

/// What the bodies of the routes that concern the terminal itself hold, and what the status route
/// answers. The keys are described in docs/rest-api.yaml. Any thread.
namespace terminal_routes {

Decoded<FR01_Parameter> decodeTimeSet(const QByteArray& body);
Decoded<SystemEvent_Parameter> decodeSystemSet(const QByteArray& body);
Decoded<Device_Setup_Parameter> decodeDeviceSet(const QByteArray& body);
Decoded<DoReceiveUserData> decodeRunEnrollMode(const QByteArray& body);
/// The archive's address is on the manager's host @p managerIP, whatever the body says.
Decoded<FR44_Parameter> decodeFirmwareUpdate(const QByteArray& body, const QString& managerIP);

/// Versions and settings as the status route answers them. The password is not among them.
QJsonObject deviceStatus(const _gui_menu_& settings, const QDateTime& now);

}  // namespace terminal_routes
