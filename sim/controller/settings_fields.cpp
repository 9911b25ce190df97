#include "sim/controller/settings_fields.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <cstring>
#include <type_traits>

#include "sim/controller/work_status.h"

namespace settings {
namespace {

template <typename T>
constexpr Kind kindOf() {
    if constexpr (std::is_integral_v<T>)
        return Kind::Number;
    else if constexpr (std::is_same_v<T, _byte4_time_se_>)
        return Kind::Range;
    else if constexpr (std::is_same_v<T, std::uint8_t[4]>)
        return Kind::Address;
    else
        return Kind::Text;
}

constexpr struct {
    const char* field;
    const char* values;
} kValues[] = {
#include "settings_values.inc"
};

quint32 readNumber(const Field& field, const char* data) {
    quint32 number = 0;
    std::memcpy(&number, data + field.offset, field.size);
    return number;
}

QString setNumber(const Field& field, char* data, const QString& value) {
    bool ok = false;
    const quint32 number = value.toUInt(&ok);
    if (!ok || (field.size < sizeof number && (number >> (8 * field.size)) != 0))
        return QStringLiteral("not a number of %1 byte(s)").arg(field.size);
    std::memcpy(data + field.offset, &number, field.size);
    return {};
}

QString setText(const Field& field, char* data, const QString& value) {
    const QByteArray text = value.toUtf8();
    if (static_cast<std::size_t>(text.size()) > field.size)
        return QStringLiteral("longer than %1 bytes").arg(field.size);
    std::memset(data + field.offset, 0, field.size);
    std::memcpy(data + field.offset, text.constData(), static_cast<std::size_t>(text.size()));
    return {};
}

QString setAddress(const Field& field, char* data, const QString& value) {
    static const QRegularExpression form(QStringLiteral("^\\d+\\.\\d+\\.\\d+\\.\\d+$"));
    const QHostAddress address(value);
    if (!form.match(value).hasMatch() || address.protocol() != QAbstractSocket::IPv4Protocol)
        return QStringLiteral("not an IPv4 address");
    const quint32 number = address.toIPv4Address();
    for (std::size_t i = 0; i < 4; ++i)
        data[field.offset + i] = static_cast<char>(number >> (24 - 8 * i));
    return {};
}

QString setRange(const Field& field, char* data, const QString& value) {
    const auto range = work::parseRange(value);
    if (!range)
        return QStringLiteral("not of the form hh:mm~hh:mm");
    std::memcpy(data + field.offset, &*range, sizeof *range);
    return {};
}

}  // namespace

// clang-format off
#define MEMBER(member) std::remove_reference_t<decltype((static_cast<_gui_menu_*>(nullptr)->member))>
#define FIELD(member) {#member, kindOf<MEMBER(member)>(), offsetof(_gui_menu_, member), sizeof(MEMBER(member))}
// clang-format on

const QVector<Field>& fields() {
    static const QVector<Field> all{
        FIELD(commissioned),
        FIELD(managerControl),
        FIELD(serial),
        FIELD(customerId),
        FIELD(users.all),
        FIELD(users.general),
        FIELD(users.admin),
        FIELD(users.inOut),
        FIELD(users.faceOnly),
        FIELD(users.visitor),
        FIELD(users.unsent),
        FIELD(liveSeconds),
        FIELD(resultSeconds),
        FIELD(paymentDoneSeconds),
        FIELD(attendanceDoneSeconds),
        FIELD(ddns.use),
        FIELD(ddns.host),
        FIELD(ddns.port),
        FIELD(registration.on),
        FIELD(registration.authMethod),
        FIELD(registration.autoId),
        FIELD(registration.wearGlasses),
        FIELD(registration.syncAutoZone),
        FIELD(registration.retainUserData),
        FIELD(registration.userLevel),
        FIELD(face.securityLevel),
        FIELD(face.camera),
        FIELD(face.saveThumbnail),
        FIELD(face.useThumbnail),
        FIELD(face.saveUnregistered),
        FIELD(sound.volume),
        FIELD(sound.alarmSound),
        FIELD(sound.recognitionFailSound),
        FIELD(screen.brightness),
        FIELD(screen.sleepMode),
        FIELD(screen.standbyMode),
        FIELD(screen.statusLed),
        FIELD(screen.menuTimeout),
        FIELD(screen.standbyPicture),
        FIELD(screen.showThumbnail),
        FIELD(setup.deviceNumber),
        FIELD(setup.adminPassword),
        FIELD(setup.language),
        FIELD(setup.relayUse),
        FIELD(setup.relayType),
        FIELD(setup.doorOpenDuration),
        FIELD(setup.tamperSwitch),
        FIELD(setup.syncTime),
        FIELD(setup.quickRegistration),
        FIELD(setup.authMethod),
        FIELD(setup.demo),
        FIELD(setup.alarmMode),
        FIELD(setup.readerMode),
        FIELD(setup.serviceMode),
        FIELD(setup.visitorCall),
        FIELD(setup.operation),
        FIELD(setup.buttonUse),
        FIELD(network.useManager),
        FIELD(network.connectPeriod),
        FIELD(network.checkPeriod),
        FIELD(network.own.dhcp),
        FIELD(network.own.address),
        FIELD(network.own.mask),
        FIELD(network.own.gateway),
        FIELD(network.own.dns),
        FIELD(network.own.managerAddress),
        FIELD(network.own.managerPort),
        FIELD(operation.attendanceMode),
        FIELD(operation.lunchOff),
        FIELD(operation.saveSimpleAccess),
        FIELD(operation.supperOff),
        FIELD(operation.doorOpenSetting),
        FIELD(operation.doorOpenTime),
        FIELD(operation.forcedOpenOff),
        FIELD(operation.forcedCloseOff),
        FIELD(operation.forcedOpen),
        FIELD(operation.forcedClose),
        FIELD(operation.weekdayIn),
        FIELD(operation.weekdayOut),
        FIELD(operation.saturdayIn),
        FIELD(operation.saturdayOut),
        FIELD(operation.holidayRule),
        FIELD(operation.saveRecognitionFail),
        FIELD(operation.mealCountView),
        FIELD(firmwareVersion),
        FIELD(kernelVersion),
        FIELD(mainBoardVersion),
        FIELD(ioBoardVersion),
    };
    return all;
}

const Field* find(const QString& name) {
    for (const Field& field : fields()) {
        if (name == QLatin1String(field.name))
            return &field;
    }
    return nullptr;
}

QString values(const Field& field) {
    for (const auto& known : kValues) {
        if (qstrcmp(field.name, known.field) == 0)
            return QString::fromUtf8(known.values);
    }
    return {};
}

QString value(const Field& field, const _gui_menu_& menu) {
    const char* data = reinterpret_cast<const char*>(&menu);
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(data[field.offset + i]));
    };
    switch (field.kind) {
        case Kind::Number:
            return QString::number(readNumber(field, data));
        case Kind::Text:
            return QString::fromUtf8(
                data + field.offset,
                static_cast<int>(qstrnlen(data + field.offset, static_cast<uint>(field.size))));
        case Kind::Address:
            return QStringLiteral("%1.%2.%3.%4")
                .arg(byte(0))
                .arg(byte(1))
                .arg(byte(2))
                .arg(byte(3));
        case Kind::Range:
            return QString::asprintf("%02u:%02u~%02u:%02u", byte(0), byte(1), byte(2), byte(3));
    }
    return {};
}

QString setValue(const Field& field, _gui_menu_& menu, const QString& value) {
    char* data = reinterpret_cast<char*>(&menu);
    switch (field.kind) {
        case Kind::Number:
            return setNumber(field, data, value);
        case Kind::Text:
            return setText(field, data, value);
        case Kind::Address:
            return setAddress(field, data, value);
        case Kind::Range:
            return setRange(field, data, value);
    }
    return {};
}

}  // namespace settings
