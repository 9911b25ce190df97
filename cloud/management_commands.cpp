#include "cloud/management_commands.h"

#include <QDate>
#include <QTime>
#include <cstring>
#include <utility>

#include "cloud/cloud_log.h"
#include "cloud/decoded.h"
#include "cloud/rest_client.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"

namespace {

struct SystemAction {
    const char* word;
    unsigned short command;
    unsigned char p1;
    unsigned char p2;
};

/// Orders that a controller may leave unanswered.
constexpr std::size_t kMostOrdered = 64;

constexpr SystemAction kSystemActions[] = {
    {"rebootDevice", command::Reboot, 0, 0},
    {"deleteLogData", command::Initialise, command::initialise::Logs, 0},
    {"deleteSettingData", command::Initialise, command::initialise::Settings, 0},
    {"deleteAllData", command::Initialise, command::initialise::Everything, 0},
    {"deleteAllUsers", command::DeleteUserGroup, command::user_group::All,
     command::ordered::ByService},
    {"deleteGeneralUsers", command::DeleteUserGroup, command::user_group::General,
     command::ordered::ByService},
    {"deleteFaceonlyUsers", command::DeleteUserGroup, command::user_group::FaceOnly,
     command::ordered::ByService},
    {"deleteAdmin", command::DeleteUserGroup, command::user_group::Administrators,
     command::ordered::ByService},
};

struct UserId {
    char text[16];
};

UserId userId(const QString& cardNo) {
    UserId id;
    setFieldText(id.text, cardNo);
    return id;
}

/// @p text as a number up to @p most, @p standard when it is none.
std::uint8_t numberOr(const QString& text, std::uint8_t standard, int most) {
    bool ok = false;
    const int number = text.toInt(&ok);
    return ok && number >= 0 && number <= most ? static_cast<std::uint8_t>(number) : standard;
}

/// 1 lowest .. 5 highest; 0, as the terminal has it, for everything else.
std::uint8_t convertSensitivity(const QString& text) {
    return numberOr(text, 0, 5);
}

ServiceNetwork serviceNetwork(const NetworkBlock& block) {
    ServiceNetwork network{};
    network.useManager = block.useManager;
    std::memcpy(network.address, block.own.address, sizeof network.address);
    std::memcpy(network.mask, block.own.mask, sizeof network.mask);
    std::memcpy(network.gateway, block.own.gateway, sizeof network.gateway);
    std::memcpy(network.dns, block.own.dns, sizeof network.dns);
    std::memcpy(network.managerAddress, block.own.managerAddress, sizeof network.managerAddress);
    network.managerPort = block.own.managerPort;
    return network;
}

_gui_user_ userRecord(const DoReceiveUserData& user, std::uint8_t origin) {
    _gui_user_ record{};
    setFieldText(record.userId, user.cardNo);
    setFieldText(record.customerId, user.cardNo);
    setFieldText(record.name, user.name);
    record.authMethod = numberOr(user.authType, AuthMethod::FaceOrCard, AuthMethod::FaceAndId);
    record.level = numberOr(user.userLevel, UserLevel::General, UserLevel::Visitor);
    record.facePresent = user.picture.isEmpty() ? 0 : 1;
    record.cardPresent = user.cardTemplate.isEmpty() ? 0 : 1;
    record.cardType = numberOr(user.cardType, 0, 255);
    record.reissueNumber = numberOr(user.reissueNo, 0, 255);
    setFieldText(record.nationCode, user.nationCd);
    setFieldText(record.cardNumber, user.cardNo);
    setFieldText(record.cardTemplate, user.cardTemplate);
    setFieldText(record.registrationTime, user.registTime);
    setFieldText(record.timeSchedule, user.timeSchedule);
    setFieldText(record.restrictTime, user.restrictTime);
    setFieldText(record.picture, user.picture);
    record.sensitivity = convertSensitivity(user.sensivity);
    record.origin = origin;
    return record;
}

}  // namespace

template <typename Record>
void ManagementCommands::send(unsigned short cmd, unsigned char p1, const Record& record) {
    sent_ = host_.SendCommand(cmd, p1, 0, sizeof record, reinterpret_cast<const char*>(&record));
}

void ManagementCommands::openDoor() {
    // The overload that looks at the socket: a door request counts from the first moment of a
    // connection.
    host_.SendCommand(command::OpenDoor, 0, 0, 0, nullptr);
}

void ManagementCommands::getUser(const QVariant& parameter) {
    if (parameter.canConvert<FR33_3_Parameter>())
        send(command::AskUserData, 0, userId(parameter.value<FR33_3_Parameter>().cardNo));
}

void ManagementCommands::deleteUser(const QVariant& parameter) {
    if (!parameter.canConvert<FR33_3_Parameter>())
        return;
    host_.showStandby();
    host_.showPopupText(QStringLiteral("ListItem_Synchronizing"));
    send(command::DeleteUser, command::ordered::ByService,
         userId(parameter.value<FR33_3_Parameter>().cardNo));
    host_.showLive();
}

void ManagementCommands::enrolUser(const QVariant& parameter) {
    if (parameter.canConvert<DoReceiveUserData>())
        send(command::EnrolNetworkUser, 0,
             userRecord(parameter.value<DoReceiveUserData>(), UserOrigin::Service));
}

void ManagementCommands::runKioskEnrolMode(const QVariant& parameter) {
    if (!parameter.canConvert<DoReceiveUserData>())
        return;
    const _gui_user_ user = userRecord(parameter.value<DoReceiveUserData>(), UserOrigin::Kiosk);
    host_.SetGuiUser(&user);
    _gui_menu_ settings;
    host_.GetGuiMenu(&settings);
    host_.SetGuiMenu(&settings);
    host_.startEnrolment();
}

void ManagementCommands::setTime(const QVariant& parameter) {
    const auto given = parameter.value<FR01_Parameter>();
    const std::optional<QDateTime> moment = given.moment();
    if (!moment) {
        qCWarning(cloudLog, "clock not set to '%s' '%s'", qUtf8Printable(given.date),
                  qUtf8Printable(given.time));
        return;
    }
    const QDate date = moment->date();
    const QTime time = moment->time();
    const ClockTime clock{
        static_cast<std::uint8_t>(date.year() % 100), static_cast<std::uint8_t>(date.month()),
        static_cast<std::uint8_t>(date.day()),        static_cast<std::uint8_t>(time.hour()),
        static_cast<std::uint8_t>(time.minute()),     static_cast<std::uint8_t>(time.second()),
    };
    send(command::SetClock, command::save::Settings, clock);
}

void ManagementCommands::setDevice(const QVariant& parameter) {
    if (!parameter.canConvert<Device_Setup_Parameter>())
        return;
    const auto setup = parameter.value<Device_Setup_Parameter>();
    _gui_menu_ settings;
    host_.GetGuiMenu(&settings);
    setup.applyTo(settings);

    send(command::SaveDeviceSetup, command::save::SetupByService, settings.setup);
    // The next connection brings the controller's settings back; until then others would count.
    if (!sent_)
        return;
    if (!setup.time.isEmpty()) {
        const FR01_Parameter time{setup.time.section(QLatin1Char(' '), 0, 0),
                                  setup.time.section(QLatin1Char(' '), 1)};
        setTime(QVariant::fromValue(time));
    }
    send(command::SaveRegistrationMode, command::save::Settings, settings.registration);
    send(command::SaveFaceSettings, command::save::Settings, settings.face);
    send(command::SaveScreenSettings, command::save::Settings, settings.screen);
    send(command::SaveSoundSettings, command::save::Settings, settings.sound);
    host_.setIp(settings.network.own);
    send(command::SaveNetwork, command::save::NetworkByService, serviceNetwork(settings.network));
    host_.SetGuiMenu(&settings);
    host_.initRestCall();
    ordered_.push_back({setup, host_.linkProgress().connection});
    if (ordered_.size() > kMostOrdered)
        ordered_.pop_front();
}

void ManagementCommands::settingsStored() {
    const quint32 connection = host_.linkProgress().connection;
    while (!ordered_.empty() && ordered_.front().connection != connection)
        ordered_.pop_front();
    if (ordered_.empty())
        return;
    // A record that was on its way when the order was sent has brought the former values back, and
    // the next order would have made them the controller's too.
    if (std::exchange(crossed_, false)) {
        _gui_menu_ settings;
        host_.GetGuiMenu(&settings);
        for (const Ordered& each : ordered_)
            each.setup.applyTo(settings);
        host_.SetGuiMenu(&settings);
    }
    ordered_.pop_front();
}

void ManagementCommands::setSystem(const QVariant& parameter) {
    if (!parameter.canConvert<SystemEvent_Parameter>())
        return;
    const QString word = parameter.value<SystemEvent_Parameter>().action;
    host_.showStandby();
    for (const SystemAction& action : kSystemActions) {
        if (word != QLatin1String(action.word))
            continue;
        if (action.command == command::DeleteUserGroup)
            host_.showPopupText(QStringLiteral("ListItem_Synchronizing"));
        host_.SendCommand(action.command, action.p1, action.p2);
    }
    host_.showLive();
}

bool ManagementCommands::addUserRestCommandDir(const CommandQueue::Taken& taken) {
    const QString& cardNo = taken.command.cardNo;
    sent_ = false;
    if (taken.command.kind == CommandFolder::Kind::Delete) {
        qCInfo(cloudLog, "DEL Id : %s", qUtf8Printable(cardNo));
        cloud_.parsingRestCommand(host_command::kDeleteUser,
                                  QVariant::fromValue(FR33_3_Parameter{cardNo}));
    } else {
        qCInfo(cloudLog, "ADD Id : %s", qUtf8Printable(cardNo));
        cloud_.parsingRestCommand(host_command::kEnrolUser, QVariant::fromValue(taken.user));
        if (sent_)
            qCInfo(cloudLog, "user %s goes to the controller, %s picture", qUtf8Printable(cardNo),
                   taken.user.picture.isEmpty() ? "without a" : "with a");
    }
    qCInfo(cloudLog, "return RestComm : %d", sent_ ? 1 : 0);
    return sent_;
}

void ManagementCommands::completed(const QVariant& procIdx) {
    const auto request = procIdx.value<ProcIDX>();
    if (request.command == RestClass::kUserInOutLog && request.resultCode == result::kSucceed)
        send(command::EventReported, 0, request.data.value<FR21_Parameter>().record);
    if (request.command == RestClass::kUserEnroll &&
        request.data.canConvert<Parameter_UserData>()) {
        UserReported record = request.data.value<Parameter_UserData>().record;
        record.resultCode = static_cast<std::uint16_t>(qBound(0, request.resultCode, 0xFFFF));
        send(command::UserReported, 0, record);
    }
}
