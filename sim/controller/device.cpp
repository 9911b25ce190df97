#include "sim/controller/device.h"

#include <cstring>
#include <utility>

#include "link/command_code.h"
#include "sim/controller/terminal_link.h"
#include "sim/controller/work_status.h"

_gui_menu_ factorySettings() {
    _gui_menu_ menu{};
    const auto text = [](auto& field, const char* value) {
        std::memcpy(field, value, std::strlen(value));
    };
    menu.commissioned = 1;
    menu.managerControl = 1;
    text(menu.serial, "ZEL01-SIM-0001");
    text(menu.customerId, "ZEL0001");
    menu.liveSeconds = 20;
    menu.resultSeconds = 5;
    menu.paymentDoneSeconds = 3;
    menu.attendanceDoneSeconds = 3;
    menu.ddns.port = 80;
    menu.registration = {1, 2, 1, 0, 0, 0, 1};
    menu.face = {3, 0, 1, 1, 0};
    menu.sound = {5, 0, 0};
    menu.screen.brightness = 7;
    menu.screen.sleepMode = 3;
    menu.screen.statusLed = 1;
    menu.screen.menuTimeout = 2;
    menu.screen.showThumbnail = 1;
    menu.setup.deviceNumber = 1;
    menu.setup.relayUse = 1;
    menu.setup.doorOpenDuration = 5;
    menu.setup.tamperSwitch = 1;
    menu.setup.syncTime = 1;
    menu.setup.authMethod = 2;
    menu.setup.visitorCall = 1;
    menu.setup.operation = 1;
    menu.setup.buttonUse = 1;
    menu.network.connectPeriod = 10;
    menu.network.checkPeriod = 60;
    menu.network.own = {
        0,   {192, 168, 0, 100}, {255, 255, 255, 0}, {192, 168, 0, 1}, {8, 8, 8, 8}, {127, 0, 0, 1},
        8080};
    menu.operation.saveSimpleAccess = 1;
    menu.operation.doorOpenTime = 5;
    menu.operation.forcedCloseOff = 1;
    menu.operation.forcedOpen = {9, 0, 12, 0};
    menu.operation.weekdayIn = {8, 0, 9, 30};
    menu.operation.weekdayOut = {17, 30, 22, 0};
    menu.operation.saturdayIn = {8, 0, 10, 0};
    menu.operation.saturdayOut = {13, 0, 18, 0};
    menu.operation.holidayRule = 2;
    menu.operation.saveRecognitionFail = 1;
    text(menu.firmwareVersion, "1.0.0");
    text(menu.kernelVersion, "5.10.0");
    text(menu.mainBoardVersion, "1.2");
    text(menu.ioBoardVersion, "1.1");
    return menu;
}

ClockTime clockTime(const QDateTime& time) {
    const auto byte = [](int value) { return static_cast<quint8>(value); };
    return {byte(time.date().year() - 2000), byte(time.date().month()),
            byte(time.date().day()),         byte(time.time().hour()),
            byte(time.time().minute()),      byte(time.time().second())};
}

GUI_LOGDATA eventOf(const _gui_user_& user, const QDateTime& time) {
    GUI_LOGDATA event{};
    std::memcpy(event.userId, user.userId, sizeof event.userId);
    std::memcpy(event.name, user.name, sizeof event.name);
    std::memcpy(event.cardNumber, user.cardNumber, sizeof event.cardNumber);
    std::memcpy(event.visiblePicture, user.picture, sizeof event.visiblePicture);
    std::memcpy(event.infraredPicture, user.picture, sizeof event.infraredPicture);
    event.cardType = user.cardType;
    event.reissueNumber = user.reissueNumber;
    const ClockTime clock = clockTime(time);
    event.year = clock.year;
    event.month = clock.month;
    event.day = clock.day;
    event.hour = clock.hour;
    event.minute = clock.minute;
    event.second = clock.second;
    return event;
}

Device::Device(TerminalLink& link, const QString& dataFolder, QObject* parent)
    : QObject(parent),
      link_(link),
      users_(dataFolder),
      logs_(dataFolder),
      settings_(factorySettings()),
      dataFolder_(dataFolder) {
    settings_.users = users_.counts();
}

void Device::usersChanged() {
    const UserCounts before = settings_.users;
    settings_.users = users_.counts();
    // The access controller has not heard of whoever has come.
    const quint32 all = settings_.users.all;
    settings_.users.unsent = qMin(before.unsent + (all > before.all ? all - before.all : 0), all);
    emit changed();
}

void Device::removeLogs() {
    logs_.removeAll();
    emit statusChanged();
}

void Device::reportUser(const _gui_user_& user) {
    info_s info{};
    info.user = user;
    std::memcpy(info.visiblePicture, user.picture, sizeof info.visiblePicture);
    sendRecord(command::UserEnrolled, 0, 0, info);
}

namespace {

bool give(const QString& number, Device::CardTaker& to) {
    // Taken out first: who gets it may wait for the next one.
    const Device::CardTaker taker = std::exchange(to, Device::CardTaker());
    if (taker)
        taker(number);
    return taker != nullptr;
}

}  // namespace

bool Device::giveCard(const QString& number) {
    return give(number, cardTaker_);
}

bool Device::giveFace(const QString& number) {
    return give(number, faceTaker_);
}

void Device::setSettings(const _gui_menu_& settings) {
    settings_ = settings;
    emit settingsChanged();
    emit changed();
}

int Device::status() const {
    return forcedStatus_.value_or(work::statusAt(settings_, now()));
}

void Device::forceStatus(std::optional<int> status) {
    forcedStatus_ = status;
    emit statusChanged();
    emit changed();
}

void Device::setArmed(bool armed) {
    if (armed_ == armed)
        return;
    armed_ = armed;
    emit statusChanged();
    emit changed();
}

void Device::setTime(const QDateTime& time) {
    setClockOffset(QDateTime::currentDateTime().msecsTo(time));
}

void Device::setClockOffset(qint64 milliseconds) {
    clockOffset_ = milliseconds;
    emit timeChanged();
    emit changed();
}

void Device::send(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload) {
    link_.send(command, p1, p2, payload);
}
