#include "tools/gallery/area_states.h"

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

namespace {

enum Operation : std::uint8_t { Access, Attendance, Meals };
enum Day { Weekday, Saturday };

constexpr int kMarkDrawn = 200;  // milliseconds

_gui_menu_ settingsOf(const Stage& stage, Operation operation) {
    if (operation == Meals)
        return stage.mealSettings();
    _gui_menu_ settings = stage.settings();
    settings.setup.operation = operation;
    return settings;
}

void work(Stage& stage, const _gui_menu_& settings, int status) {
    stage.changeSettings(settings);
    StatusReport report{};
    report.meals = {128, 342, 0, 0};
    stage.receiveRecord(command::SystemStatus, report, static_cast<unsigned char>(status));
}

/// Waits until the mark of a confirmation has been drawn.
void waitForMark() {
    QEventLoop loop;
    QTimer::singleShot(kMarkDrawn, &loop, &QEventLoop::quit);
    loop.exec();
}

void recognise(Stage& stage, const RecognitionResult& result) {
    stage.receiveRecord(command::Recognised, result);
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

/// The live view with the operating status @p status on such a day.
void live(Stage& stage, Operation operation, int status, Day day = Weekday) {
    if (day == Saturday)
        stage.setTime(QDateTime(QDate(2026, 3, 14), QTime(8, 52)));
    work(stage, settingsOf(stage, operation), status);
}

/// The same on a terminal whose strip offers all four buttons.
void liveWithAllButtons(Stage& stage, Operation operation, int status) {
    _gui_menu_ settings = settingsOf(stage, operation);
    settings.setup.authMethod = AuthMethod::FaceAndId;
    work(stage, settings, status);
}

/// The live view of a terminal that records nothing but coming back.
void liveReturnOnly(Stage& stage) {
    _gui_menu_ settings = settingsOf(stage, Attendance);
    settings.operation.attendanceMode = AttendanceRule::Return;
    work(stage, settings, 4);
}

/// A face before the camera, fields as in TrackedFace.
void face(Stage& stage, std::uint8_t state, std::uint8_t reason = 0) {
    live(stage, Attendance, 1);
    stage.receiveRecord(command::TrackingBox, TrackedFace{124, 232, 232, 296, state, reason});
}

/// A card that nobody has.
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

/// The result for the user number @p user of a fresh controller.
void result(Stage& stage, int user, std::uint8_t code, Operation operation, int status) {
    work(stage, settingsOf(stage, operation), status);
    RecognitionResult result = resultOf(stage, user);
    result.result = code;
    recognise(stage, result);
}

/// The same with the question which attendance event it is; @p button is then touched, if any.
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

/// The event @p key is recorded already, on a terminal fixed to it.
void recorded(Stage& stage, std::uint8_t key) {
    const int status = key - command::key::In + 1;
    _gui_menu_ settings = settingsOf(stage, Attendance);
    settings.operation.attendanceMode = static_cast<std::uint8_t>(status + AttendanceRule::Chosen);
    work(stage, settings, status);
    RecognitionResult result = resultOf(stage, 1);
    result.attendanceEvent = key;
    recognise(stage, result);
}

/// Somebody whose name is as long as names get.
void longestName(Stage& stage, const char* name) {
    work(stage, settingsOf(stage, Access), 0);
    RecognitionResult result = resultOf(stage, 1);
    setFieldText(result.name, QString::fromUtf8(name));
    recognise(stage, result);
}

/// A meal is asked for, plus is touched @p more times, and then payment if @p pay.
void meal(Stage& stage, int status, int more, bool pay) {
    result(stage, 1, 0, Meals, status);
    for (int i = 0; i < more; ++i)
        stage.touch(QStringLiteral("plusButton"));
    if (pay) {
        stage.touch(QStringLiteral("paymentButton"));
        waitForMark();
    }
}

/// The recognition arms (1) or disarms (2).
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

/// The controller has recorded an access, or the refusal of one.
void recordedEvent(Stage& stage, bool accepted) {
    GUI_LOGDATA event{};
    event.eventStatus = accepted ? 1 : 0;
    stage.receiveRecord(command::AccessEvent, event, command::event::New);
}

/// The management service is in use, but nobody has found it.
void serviceLost(Stage& stage) {
    _gui_menu_ settings = settingsOf(stage, Attendance);
    settings.network.useManager = 1;
    work(stage, settings, 1);
}

/// The standby screen with a chosen picture and a logo.
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

constexpr AreaState kStates[] = {
    {"workMenuWindow", "access-event", [](Stage& stage) { recordedEvent(stage, true); }},
    {"stayWindow", "access-event", [](Stage& stage) { recordedEvent(stage, true); }},
    {"stayWindow", "service-lost", serviceLost},
    {"stayWindow", "chosen-picture", chosenPicture},
    {"stayWindow", "asleep", asleep},
    {"liveWindow", "in", [](Stage& stage) { live(stage, Attendance, 1); }},
    {"liveWindow", "in-saturday", [](Stage& stage) { live(stage, Attendance, 1, Saturday); }},
    {"liveWindow", "out", [](Stage& stage) { live(stage, Attendance, 2); }},
    {"liveWindow", "out-saturday", [](Stage& stage) { live(stage, Attendance, 2, Saturday); }},
    {"liveWindow", "break", [](Stage& stage) { live(stage, Attendance, 3); }},
    {"liveWindow", "return", liveReturnOnly},
    {"liveWindow", "breakfast", [](Stage& stage) { live(stage, Meals, 1); }},
    {"liveWindow", "lunch", [](Stage& stage) { liveWithAllButtons(stage, Meals, 2); }},
    {"liveWindow", "dinner", [](Stage& stage) { live(stage, Meals, 3); }},
    {"liveWindow", "supper", [](Stage& stage) { live(stage, Meals, 4); }},
    {"liveWindow", "no-meal", [](Stage& stage) { live(stage, Meals, 0); }},
    {"liveWindow", "meal-counts", mealCounts},
    {"liveWindow", "tracking", [](Stage& stage) { face(stage, 1); }},
    {"liveWindow", "recognised", [](Stage& stage) { face(stage, 2); }},
    {"liveWindow", "unknown-face", [](Stage& stage) { face(stage, 3, 1); }},
    {"liveWindow", "refused-face", [](Stage& stage) { face(stage, 3, 2); }},
    {"liveWindow", "unknown-card", unknownCard},
    {"liveWindow", "visitor-call", visitorCall},
    {"liveWindow", "service-lost",
     [](Stage& stage) {
         face(stage, 3, 2);
         serviceLost(stage);
         recordedEvent(stage, false);
     }},
    {"liveWindow", "pressed", [](Stage& stage) { stage.press(QStringLiteral("menuButton")); }},
    {"liveWindow", "meal-pressed",
     [](Stage& stage) {
         live(stage, Meals, 1);
         stage.press(QStringLiteral("noti_layer"));
     }},
    {"recognizeWindow", "access", [](Stage& stage) { result(stage, 0, 0, Access, 0); }},
    {"recognizeWindow", "access-without-picture",
     [](Stage& stage) { result(stage, 2, 0, Access, 0); }},
    {"recognizeWindow", "access-long-name", [](Stage& stage) { result(stage, 4, 0, Access, 0); }},
    {"recognizeWindow", "longest-korean-name",
     [](Stage& stage) {
         longestName(stage, "김수한무거북이와두루미삼천갑자동방삭치치카포사리사리센타워리워리");
     }},
    {"recognizeWindow", "longest-japanese-name",
     [](Stage& stage) {
         longestName(stage, "寿限無寿限無五劫の擦り切れ海砂利水魚の水行末雲来末風来末食う寝る");
     }},
    {"recognizeWindow", "no-access-time", [](Stage& stage) { result(stage, 5, 1, Access, 0); }},
    {"recognizeWindow", "refusal-event",
     [](Stage& stage) {
         result(stage, 5, 1, Access, 0);
         recordedEvent(stage, false);
     }},
    {"recognizeWindow", "not-permitted", [](Stage& stage) { result(stage, 3, 2, Access, 0); }},
    {"recognizeWindow", "registered", [](Stage& stage) { result(stage, 6, 3, Access, 0); }},
    {"recognizeWindow", "meal-taken", [](Stage& stage) { result(stage, 1, 4, Meals, 2); }},
    {"recognizeWindow", "demonstration", demonstration},
    {"recognizeWindow", "question", [](Stage& stage) { question(stage, ""); }},
    {"recognizeWindow", "question-with-event",
     [](Stage& stage) {
         question(stage, "");
         recordedEvent(stage, true);
     }},
    {"recognizeWindow", "question-in", [](Stage& stage) { question(stage, "inButton"); }},
    {"recognizeWindow", "question-out", [](Stage& stage) { question(stage, "outButton"); }},
    {"recognizeWindow", "question-break", [](Stage& stage) { question(stage, "outDutyButton"); }},
    {"recognizeWindow", "question-return", [](Stage& stage) { question(stage, "inDutyButton"); }},
    {"recognizeWindow", "question-pressed",
     [](Stage& stage) {
         question(stage, "");
         stage.press(QStringLiteral("inButton"));
     }},
    {"recognizeWindow", "in-recorded", [](Stage& stage) { recorded(stage, 16); }},
    {"recognizeWindow", "out-recorded", [](Stage& stage) { recorded(stage, 17); }},
    {"recognizeWindow", "break-recorded", [](Stage& stage) { recorded(stage, 18); }},
    {"recognizeWindow", "return-recorded", [](Stage& stage) { recorded(stage, 19); }},
    {"recognizeWindow", "no-meal", [](Stage& stage) { result(stage, 1, 1, Meals, 0); }},
    {"recognizeWindow", "meal", [](Stage& stage) { meal(stage, 2, 0, false); }},
    {"recognizeWindow", "meal-several", [](Stage& stage) { meal(stage, 2, 1, false); }},
    {"recognizeWindow", "meal-most", [](Stage& stage) { meal(stage, 2, 98, false); }},
    {"recognizeWindow", "meal-pressed",
     [](Stage& stage) {
         meal(stage, 2, 1, false);
         stage.press(QStringLiteral("paymentButton"));
     }},
    {"recognizeWindow", "meal-paid", [](Stage& stage) { meal(stage, 4, 1, true); }},
    {"recognizeWindow", "armed", [](Stage& stage) { alarm(stage, 1); }},
    {"recognizeWindow", "disarmed", [](Stage& stage) { alarm(stage, 2); }},
};

}  // namespace

AreaStates doorStates() {
    return kStates;
}
