#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QUrl>

#include "cloud/terminal_routes.h"
#include "cloud/user_routes.h"
#include "fuzz_root.h"

namespace {

/// One body with every key of every route; values are exchanged one by one.
const QByteArray kWhole = R"({
"userInfo":{"registTime":"","authType":"1","userLevel":"1","sensivity":"3","timeSchedule":"",
 "restrictTime":"","user":{"name":"n"},"cardInfo":{"cardNo":"123456","cardTemplate":"",
 "cardType":"1","nationCd":"kr","reissueNo":"1"},"faceVisible":{"visImg":"/9j/"},"templateFile":""},
"firmwareType":"A","version":"1","firmFile":":8080/fw","system":"rebootDevice",
"TimeSettings":{"Date":"2031-12-24","Time":"23:59:58"},
"DeviceSettings":{"AdminPassword":"1","DeviceNo":"1","DeviceMode":1,"DoorOpenDuration":5,
 "time":"2031-12-24 23:59:58","QuickRegistration":{"AuthMethod":1,"SelectUserLevel":1},
 "Environment":{"ScreenSettings":{"Brightness":1,"MenuTimeout":10,"SleepMode":30},
 "SoundSettings":{"AuthFailureAlarm":1}},
 "CommType":{"IPAddress":"10.0.0.1","PortNo":1,"UseManager":1}}})";

QJsonValue valueFrom(const QByteArray& bytes) {
    switch (bytes.isEmpty() ? 0 : bytes.at(0) & 7) {
        case 0:
            return QJsonValue::Null;
        case 1:
            return bytes.size() * -1e18;
        case 2:
            return bytes.size() > 1 ? bytes.at(1) : 0.5;
        case 3:
            return QJsonArray{QJsonObject{}};
        default:
            return QString::fromLatin1(bytes.mid(1));
    }
}

/// @p object with the value number @p index, counted through all groups, exchanged.
QJsonObject exchanged(QJsonObject object, int& index, const QJsonValue& value) {
    const QStringList keys = object.keys();
    for (const QString& key : keys) {
        if (index-- == 0)
            object.insert(key, value);
        else if (object.value(key).isObject())
            object.insert(key, exchanged(object.value(key).toObject(), index, value));
    }
    return object;
}

void decodeAll(const QByteArray& body) {
    const auto sent = user_routes::decodeUserDataSend(body);
    demand(!sent.ok() || user_routes::isCardNumber(sent.value.user.cardNo));
    user_routes::decodeUserDataGet(body);
    user_routes::decodeUserDataDelete(body);
    terminal_routes::decodeTimeSet(body);
    terminal_routes::decodeSystemSet(body);
    terminal_routes::decodeRunEnrollMode(body);
    _gui_menu_ settings{};
    const auto setup = terminal_routes::decodeDeviceSet(body);
    setup.value.applyTo(settings);
    demand(settings.setup.doorOpenDuration <= 60 && settings.screen.menuTimeout <= 3);
    const QString manager = QStringLiteral("10.0.0.5");
    const auto firmware = terminal_routes::decodeFirmwareUpdate(body, manager);
    demand(!firmware.ok() || QUrl(firmware.value.address).host() == manager);
}

}  // namespace

void take(std::uint8_t first, const QByteArray& rest) {
    decodeAll(static_cast<char>(first) + rest);
    static const QJsonObject whole = QJsonDocument::fromJson(kWhole).object();
    int index = first % 48;
    decodeAll(QJsonDocument(exchanged(whole, index, valueFrom(rest))).toJson());
}
