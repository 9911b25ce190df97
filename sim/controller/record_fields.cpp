#include "sim/controller/record_fields.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <cstring>
#include <type_traits>

namespace record {
namespace {

template <typename T>
constexpr Kind kindOf() {
    if constexpr (std::is_integral_v<T>)
        return Kind::Number;
    else if constexpr (std::is_same_v<T, _byte4_time_se_>)
        return Kind::Range;
    else if constexpr (std::is_same_v<T, RecordDate>)
        return Kind::Date;
    else if constexpr (std::is_same_v<std::remove_extent_t<T>, char>)
        return Kind::Text;
    else
        return Kind::Bytes;
}

// clang-format off
#define MEMBER(record, member) std::remove_reference_t<decltype((static_cast<record*>(nullptr)->member))>
#define FIELD_OF(record, member, kind) {#member, kind, offsetof(record, member), sizeof(MEMBER(record, member))}
#define FIELD(member) FIELD_OF(Record, member, kindOf<MEMBER(Record, member)>())
#define ADDRESS(member) FIELD_OF(Record, member, Kind::Address)
// clang-format on

Description menuRecord() {
    using Record = _gui_menu_;
    return {"_gui_menu_",
            sizeof(Record),
            {
                FIELD(commissioned),
                FIELD(managerControl),
                FIELD(reserved1),
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
                FIELD(reserved2),
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
                ADDRESS(network.own.address),
                ADDRESS(network.own.mask),
                ADDRESS(network.own.gateway),
                ADDRESS(network.own.dns),
                ADDRESS(network.own.managerAddress),
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
                FIELD(reserved3),
            }};
}

Description userRecord() {
    using Record = _gui_user_;
    return {"_gui_user_",
            sizeof(Record),
            {FIELD(userId),       FIELD(customerId),    FIELD(name),
             FIELD(authMethod),   FIELD(level),         FIELD(rights),
             FIELD(glasses),      FIELD(facePresent),   FIELD(cardPresent),
             FIELD(cardType),     FIELD(reissueNumber), FIELD(nationCode),
             FIELD(cardNumber),   FIELD(cardTemplate),  FIELD(registrationTime),
             FIELD(timeSchedule), FIELD(restrictTime),  FIELD(destination),
             FIELD(picture),      FIELD(sensitivity),   FIELD(enrolMode),
             FIELD(origin),       FIELD(reserved)}};
}

Description logQueryRecord() {
    using Record = GUI_USERLOG;
    return {
        "GUI_USERLOG",
        sizeof(Record),
        {FIELD(kind), FIELD(userId), FIELD(reserved1), FIELD(period), FIELD(viewType),
         FIELD(authMethod), FIELD(count), FIELD(start), FIELD(from), FIELD(to), FIELD(reserved2)}};
}

Description logRecord() {
    using Record = GUI_LOGDATA;
    return {"GUI_LOGDATA",
            sizeof(Record),
            {FIELD(number),
             FIELD(userId),
             FIELD(name),
             FIELD(cardNumber),
             FIELD(cardType),
             FIELD(reissueNumber),
             FIELD(authMethod),
             FIELD(inOut),
             FIELD(manageMode),
             FIELD(eventStatus),
             FIELD(payCount),
             FIELD(score),
             FIELD(year),
             FIELD(month),
             FIELD(day),
             FIELD(hour),
             FIELD(minute),
             FIELD(second),
             FIELD(infraredPicture),
             FIELD(visiblePicture),
             FIELD(reserved)}};
}

Description mealCountRecord() {
    using Record = MEAL_COUNT;
    return {"MEAL_COUNT",
            sizeof(Record),
            {FIELD(breakfast), FIELD(lunch), FIELD(dinner), FIELD(supper)}};
}

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
    const auto range = parseRange(value);
    if (!range)
        return QStringLiteral("not of the form hh:mm~hh:mm");
    std::memcpy(data + field.offset, &*range, sizeof *range);
    return {};
}

}  // namespace

std::optional<_byte4_time_se_> parseRange(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^([0-9]{2}):([0-9]{2})~([0-9]{2}):([0-9]{2})$"));
    const QRegularExpressionMatch match = form.match(text);
    const auto number = [&match](int i) { return static_cast<quint8>(match.captured(i).toInt()); };
    const _byte4_time_se_ range{number(1), number(2), number(3), number(4)};
    if (!match.hasMatch() || range.startHour > 24 || range.startMinute > 59 || range.endHour > 24 ||
        range.endMinute > 59)
        return {};
    return range;
}

const QVector<Description>& all() {
    static const QVector<Description> records{menuRecord(), userRecord(), logQueryRecord(),
                                              logRecord(), mealCountRecord()};
    return records;
}

const Description* find(const QString& name) {
    for (const Description& record : all()) {
        if (name == QLatin1String(record.name))
            return &record;
    }
    return nullptr;
}

const Field* findField(const Description& record, const QString& name) {
    for (const Field& field : record.fields) {
        if (name == QLatin1String(field.name))
            return &field;
    }
    return nullptr;
}

QString value(const Field& field, const char* data) {
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
        case Kind::Date:
            return QString::asprintf("%04u-%02u-%02u", byte(0) | (byte(1) << 8), byte(2), byte(3));
        case Kind::Bytes:
            break;
    }
    return QString::fromLatin1(
        QByteArray(data + field.offset, static_cast<int>(field.size)).toHex());
}

QString setValue(const Field& field, char* data, const QString& value) {
    switch (field.kind) {
        case Kind::Number:
            return setNumber(field, data, value);
        case Kind::Text:
            return setText(field, data, value);
        case Kind::Address:
            return setAddress(field, data, value);
        case Kind::Range:
            return setRange(field, data, value);
        case Kind::Date:
        case Kind::Bytes:
            break;
    }
    return QStringLiteral("cannot be set");
}

}  // namespace record
