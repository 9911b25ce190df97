#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/ipv4.h"
#include "link/device_records.h"

/// The values that management commands and reports travel in between threads, each inside a
/// QVariant. Plain texts unless said otherwise; images are base64 texts.

/// A date "yyyy-M-d" and a time "h:m:s".
struct FR01_Parameter {
    QString date;
    QString time;

    /// What they mean; nothing when there is no such time, or none of this century.
    std::optional<QDateTime> moment() const;
};

/// One access event to report. What the service has confirmed is handed back to the controller as
/// the record.
struct FR21_Parameter {
    QString authType;
    QString inoutMode;
    QString manageMode;
    QString eventStatusCd;
    QString payNum;
    QString authTime;
    QString cardNo;
    QString cardType;
    QString reissueNo;
    QString authScore;
    QString infImg;
    QString visImg;
    EventReported record{};
};

/// One user by card number.
struct FR33_3_Parameter {
    QString cardNo;
};

/// A user deleted on the terminal. The kinds are those of the controller's group delete, "5" for a
/// single user.
struct FR36_Parameter {
    QString deleteType;
    QString cardNo;
};

/// A firmware archive to fetch.
struct FR44_Parameter {
    QString firmwareType;
    QString version;
    QString address;
    int number = 0;  // under which it is kept on the disk; 0 when it is not
};

/// A visitor at the door.
struct FR51_Parameter {
    QString infImg;
    QString visImg;
};

/// The settings that the management service wants changed; what is not given stays as it is. Holds
/// single values instead of whole blocks, so that two orders in a row never undo one another.
struct Device_Setup_Parameter {
    /// A setting of one byte, by its place in the settings record.
    struct Byte {
        std::size_t offset;
        std::uint8_t value;
    };

    QString time;  // "yyyy-MM-dd hh:mm:ss", empty to leave the clock alone
    std::vector<Byte> bytes;
    std::optional<std::uint32_t> deviceNumber;
    std::optional<QString> adminPassword;
    std::optional<Ipv4::Address> managerAddress;
    std::optional<std::uint16_t> managerPort;

    /// Writes the values given into @p settings.
    void applyTo(_gui_menu_& settings) const;
};

/// One of the system action words.
struct SystemEvent_Parameter {
    QString action;
};

/// A user that the management service sends: to be stored, or to be enrolled at the terminal.
struct DoReceiveUserData {
    QString registTime;
    QString authType;
    QString userLevel;
    QString sensivity;
    QString timeSchedule;
    QString restrictTime;
    QString name;
    QString cardNo;
    QString cardTemplate;
    QString cardType;
    QString nationCd;
    QString reissueNo;
    QString templateFile;
    QString picture;  // file name in the device's image folder, empty without a picture
};

/// A user enrolled at the terminal, to report. The record goes back to the controller once the
/// service has confirmed it.
struct Parameter_UserData {
    QString userLevel;
    QString authType;
    QString registTime;
    QString cardNo;
    QString cardType;
    QString reissueNo;
    QString nationCd;
    QString cardTemplate;
    QString name;
    QString visImg;
    QString templateFile;
    QString autoEnrollment;
    QString removeUserData;
    UserReported record{};
};

/// One request of the REST client.
struct ProcIDX {
    int command = 0;
    int extra = 0;
    int resultCode = 0;  // of the service's answer; 0 when there was none
    QVariant data;       // the request's record
};

Q_DECLARE_METATYPE(FR01_Parameter)
Q_DECLARE_METATYPE(FR21_Parameter)
Q_DECLARE_METATYPE(FR33_3_Parameter)
Q_DECLARE_METATYPE(FR36_Parameter)
Q_DECLARE_METATYPE(FR44_Parameter)
Q_DECLARE_METATYPE(FR51_Parameter)
Q_DECLARE_METATYPE(Device_Setup_Parameter)
Q_DECLARE_METATYPE(SystemEvent_Parameter)
Q_DECLARE_METATYPE(DoReceiveUserData)
Q_DECLARE_METATYPE(Parameter_UserData)
Q_DECLARE_METATYPE(ProcIDX)
