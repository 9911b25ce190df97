#include "tools/gallery/door_states.h"

#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QPainter>
#include <QTimer>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/record_values.h"
#include "sim/controller/user_store.h"
#include "tools/gallery/stage.h"

namespace DoorStates {
namespace {

constexpr int kMarkDrawn = 200;  // milliseconds

template <typename Record>
QByteArray bytes(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

_gui_menu_ settingsOf(const Stage& stage, Operation operation) {
    _gui_menu_ settings = stage.settings();
    settings.setup.operation = operation;
    if (operation == Meals) {
        settings.operation.attendanceMode = 0;
        settings.operation.saveSimpleAccess = 0;
        settings.operation.weekdayIn = {7, 0, 9, 0};
        settings.operation.weekdayOut = {11, 30, 13, 30};
        settings.operation.saturdayIn = {17, 30, 19, 30};
        settings.operation.saturdayOut = {22, 0, 2, 0};
    }
    return settings;
}

void work(Stage& stage, const _gui_menu_& settings, int status) {
    stage.changeSettings(settings);
    StatusReport report{};
    report.meals = {128, 342, 0, 0};
    stage.receive(command::SystemStatus, static_cast<unsigned char>(status), bytes(report));
}

/// Waits until the mark of a confirmation has been drawn.
void waitForMark() {
    QEventLoop loop;
    QTimer::singleShot(kMarkDrawn, &loop, &QEventLoop::quit);
    loop.exec();
}

void recognise(Stage& stage, const RecognitionResult& result) {
    stage.receive(command::Recognised, 0, bytes(result));
    waitForMark();
}

RecognitionResult resultOf(Stage& stage, int number) {
    UserStore users(stage.root().path("/mnt/data"));
    const _gui_user_ user = users.users().value(number);
    RecognitionResult result{};
    std::memcpy(result.userId, user.userId, sizeof result.userId);
    std::memcpy(result.customerId, user.customerId, sizeof result.customerId);
    std::memcpy(result.name, user.name, sizeof result.name);
    return result;
}

}  // namespace

void live(Stage& stage, Operation operation, int status, Day day) {
    if (day == Saturday)
        stage.setTime(QDateTime(QDate(2026, 3, 14), QTime(8, 52)));
    work(stage, settingsOf(stage, operation), status);
}

void liveWithAllButtons(Stage& stage, Operation operation, int status) {
    _gui_menu_ settings = settingsOf(stage, operation);
    settings.setup.authMethod = AuthMethod::FaceAndId;
    work(stage, settings, status);
}

void liveReturnOnly(Stage& stage) {
    _gui_menu_ settings = settingsOf(stage, Attendance);
    settings.operation.attendanceMode = AttendanceRule::Return;
    work(stage, settings, 4);
}

void face(Stage& stage, std::uint8_t state, std::uint8_t reason) {
    live(stage, Attendance, 1);
    stage.receive(command::TrackingBox, 0, bytes(TrackedFace{124, 232, 232, 296, state, reason}));
}

void unknownCard(Stage& stage) {
    stage.receive(command::RecognitionFailed, 1);
}

void visitorCall(Stage& stage) {
    stage.touch(QStringLiteral("callButton"));
}

void mealCounts(Stage& stage) {
    live(stage, Meals, 2);
    stage.touch(QStringLiteral("noti_layer"));
}

_gui_menu_ mealSettings(const Stage& stage) {
    return settingsOf(stage, Meals);
}

void result(Stage& stage, int user, std::uint8_t code, Operation operation, int status) {
    work(stage, settingsOf(stage, operation), status);
    RecognitionResult result = resultOf(stage, user);
    result.result = code;
    recognise(stage, result);
}

void question(Stage& stage, const char* button) {
    work(stage, settingsOf(stage, Attendance), 1);
    RecognitionResult result = resultOf(stage, 0);
    result.askAttendance = 1;
    recognise(stage, result);
    if (*button == '\0')
        return;
    stage.touch(QLatin1String(button));
    waitForMark();
}

void recorded(Stage& stage, std::uint8_t key) {
    const int status = key - command::key::In + 1;
    _gui_menu_ settings = settingsOf(stage, Attendance);
    settings.operation.attendanceMode = static_cast<std::uint8_t>(status + AttendanceRule::Chosen);
    work(stage, settings, status);
    RecognitionResult result = resultOf(stage, 1);
    result.attendanceEvent = key;
    recognise(stage, result);
}

void longestName(Stage& stage, const char* name) {
    work(stage, settingsOf(stage, Access), 0);
    RecognitionResult result = resultOf(stage, 1);
    setFieldText(result.name, QString::fromUtf8(name));
    recognise(stage, result);
}

void meal(Stage& stage, int status, int more, bool pay) {
    result(stage, 1, 0, Meals, status);
    for (int i = 0; i < more; ++i)
        stage.touch(QStringLiteral("plusButton"));
    if (pay) {
        stage.touch(QStringLiteral("paymentButton"));
        waitForMark();
    }
}

void alarm(Stage& stage, std::uint8_t mode) {
    _gui_menu_ settings = settingsOf(stage, Access);
    settings.setup.alarmMode = mode;
    work(stage, settings, 0);
    recognise(stage, resultOf(stage, 0));
}

void demonstration(Stage& stage) {
    work(stage, settingsOf(stage, Attendance), 1);
    RecognitionResult result = resultOf(stage, 0);
    result.demo = 1;
    recognise(stage, result);
}

void recordedEvent(Stage& stage, bool accepted) {
    GUI_LOGDATA event{};
    event.eventStatus = accepted ? 1 : 0;
    stage.receive(command::AccessEvent, command::event::New, bytes(event));
}

void serviceLost(Stage& stage) {
    _gui_menu_ settings = settingsOf(stage, Attendance);
    settings.network.useManager = 1;
    work(stage, settings, 1);
}

void chosenPicture(Stage& stage) {
    QImage picture(600, 400, QImage::Format_RGB32);
    QPainter painter(&picture);
    QLinearGradient sky(0, 0, 600, 400);
    sky.setColorAt(0, QColor(0xfff2e2c4));
    sky.setColorAt(1, QColor(0xff4a7fb5));
    painter.fillRect(picture.rect(), sky);
    QImage logo(300, 60, QImage::Format_ARGB32);
    logo.fill(QColor(0xff5effd7));
    for (const char* folder : {"/mnt/data/Images/usb", "/mnt/data/Images/logo"})
        QDir().mkpath(stage.root().path(folder));
    picture.save(stage.root().path("/mnt/data/Images/usb/1.jpg"));
    logo.save(stage.root().path("/mnt/data/Images/logo/logo.png"));
    _gui_menu_ settings = stage.settings();
    settings.screen.standbyMode = 1;
    stage.changeSettings(settings);
    QDir(stage.root().path("/mnt/data/Images/logo")).removeRecursively();
    QDir(stage.root().path("/mnt/data/Images/usb")).removeRecursively();
}

void asleep(Stage& stage) {
    stage.receive(command::SleepScreen);
}

}  // namespace DoorStates
