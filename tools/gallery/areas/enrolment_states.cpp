#include "tools/gallery/area_states.h"

#include <QTimer>

#include "app/screen_titles.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "tools/gallery/stage.h"

namespace {

namespace capture = command::capture;

struct CardNumber {
    char text[16];
};

constexpr char kCardWay[] = "authCardOnlyRow";
constexpr char kFaceWay[] = "authFaceOnlyRow";
constexpr char kEitherWay[] = "authFaceOrCardRow";
constexpr char kBothWay[] = "authFaceAndCardRow";

void forward(Stage& stage) {
    stage.touch(QStringLiteral("forwardButton"));
}

/// Goes as far as the qualification of somebody who is enrolled in the way of the row @p way.
void qualify(Stage& stage, const char* way) {
    stage.window().changeWindow(screen_title::kEnrolMenu);
    stage.touch(QLatin1String(way));
    forward(stage);
}

void enterNumber(Stage& stage, int digits) {
    qualify(stage, kEitherWay);
    forward(stage);
    for (int i = 0; i < digits; ++i)
        stage.touch(QStringLiteral("key_%1").arg(i % 10));
    forward(stage);
}

/// Goes to where the first credential is captured.
void captureFirst(Stage& stage, const char* way) {
    qualify(stage, way);
    forward(stage);
    stage.touch(QStringLiteral("key_option"));
    for (int i = 1; i < 9; ++i)
        stage.touch(QStringLiteral("key_%1").arg(i));
    forward(stage);
    stage.receive(command::UserIdChecked, command::id_check::Free);
}

void readCard(Stage& stage, const char* way, const char* number = "10029384") {
    captureFirst(stage, way);
    CardNumber card{};
    setFieldText(card.text, QLatin1String(number));
    stage.receiveRecord(command::CardEnrolled, card);
}

/// The card has been read, and is or is not stored.
void storeCard(Stage& stage, const char* way, unsigned char result) {
    readCard(stage, way);
    stage.receive(command::UserChanged, result);
    stage.receive(command::CardTagged);
    stage.receive(command::UserStored);
    if (result == command::store::Done)
        forward(stage);
}

void tagCard(Stage& stage, unsigned char result) {
    readCard(stage, kCardWay);
    stage.receive(command::UserChanged);
    stage.receive(command::CardTagged, result);
}

void captureFace(Stage& stage, unsigned char result, unsigned char value = 0) {
    captureFirst(stage, kFaceWay);
    stage.receive(command::FaceEnrolled, result, value);
}

void storeFace(Stage& stage, unsigned char result) {
    captureFace(stage, capture::Progress, 100);
    stage.receive(command::FaceEnrolled, capture::Done);
    stage.receive(command::UserStored, result);
}

/// Lets the time of what the screen waits for run out.
void expire(Stage& stage) {
    auto* timer =
        stage.window().getActivateWindowForm()->findChild<QTimer*>(QStringLiteral("answerTimer"));
    timer->stop();
    QMetaObject::invokeMethod(timer, "timeout");
}

void holdUsers(Stage& stage, quint32 users) {
    _gui_menu_ settings = stage.settings();
    settings.users.all = users;
    stage.changeSettings(settings);
}

constexpr AreaState kStates[] = {
    {"userEnrollMenuWindow", "card", [](Stage& stage) { stage.touch(QLatin1String(kCardWay)); }},
    {"userEnrollMenuWindow", "no-controller", [](Stage& stage) { stage.loseController(); }},
    {"userEnroll_qualWindow", "card-only", [](Stage& stage) { qualify(stage, kCardWay); }},
    {"userEnroll_qualWindow", "live-view",
     [](Stage& stage) { stage.window().enrolAtDoor(AuthMethod::FromLiveView); }},
    {"userEnroll_qualWindow", "registration-off",
     [](Stage& stage) {
         stage.window().enrolAtDoor(AuthMethod::FromLiveView);
         _gui_menu_ settings = stage.settings();
         settings.registration.on = 0;
         stage.changeSettings(settings);
     }},
    {"userEnroll_qualWindow", "most-users", [](Stage& stage) { holdUsers(stage, 9999); }},
    {"userEnroll_qualWindow", "too-many-users",
     [](Stage& stage) {
         qualify(stage, kCardWay);
         holdUsers(stage, 10000);
         forward(stage);
     }},
    {"userEnroll_IDWindow", "entered",
     [](Stage& stage) {
         qualify(stage, kEitherWay);
         forward(stage);
         for (int i = 0; i < 7; ++i)
             stage.touch(QStringLiteral("key_%1").arg(i));
     }},
    {"userEnroll_IDWindow", "automatic",
     [](Stage& stage) {
         qualify(stage, kEitherWay);
         stage.receive(command::AutomaticUserId, 0, "01090000001");
         forward(stage);
     }},
    {"userEnroll_IDWindow", "no-answer",
     [](Stage& stage) {
         enterNumber(stage, 11);
         expire(stage);
     }},
    {"userEnroll_IDWindow", "no-controller",
     [](Stage& stage) {
         enterNumber(stage, 11);
         stage.loseController();
     }},
    {"userEnroll_IDWindow", "too-short", [](Stage& stage) { enterNumber(stage, 10); }},
    {"userEnroll_IDWindow", "in-use",
     [](Stage& stage) {
         enterNumber(stage, 11);
         stage.receive(command::UserIdChecked, command::id_check::InUse);
     }},
    {"userEnroll_cardTagWindow", "alone", [](Stage& stage) { captureFirst(stage, kCardWay); }},
    {"userEnroll_cardTagWindow", "read", [](Stage& stage) { readCard(stage, kEitherWay); }},
    {"userEnroll_cardTagWindow", "longest-number",
     [](Stage& stage) { readCard(stage, kEitherWay, "WWWWWWWWWWWWWWWW"); }},
    {"userEnroll_cardTagWindow", "not-read",
     [](Stage& stage) {
         captureFirst(stage, kCardWay);
         stage.receive(command::CardEnrolled, 1);
     }},
    {"userEnroll_cardTagWindow", "timed-out",
     [](Stage& stage) {
         captureFirst(stage, kCardWay);
         expire(stage);
     }},
    {"userEnroll_cardTagWindow", "no-answer",
     [](Stage& stage) {
         readCard(stage, kCardWay);
         expire(stage);
     }},
    {"userEnroll_cardTagWindow", "no-controller",
     [](Stage& stage) {
         readCard(stage, kCardWay);
         stage.loseController();
     }},
    {"userEnroll_cardTagWindow", "no-controller-question",
     [](Stage& stage) {
         storeCard(stage, kEitherWay, command::store::Done);
         stage.loseController();
     }},
    {"userEnroll_cardTagWindow", "store-full",
     [](Stage& stage) { storeCard(stage, kCardWay, command::store::StoreFull); }},
    {"userEnroll_cardTagWindow", "own-already",
     [](Stage& stage) { tagCard(stage, command::tagged::OwnAlready); }},
    {"userEnroll_cardTagWindow", "other-users",
     [](Stage& stage) { tagCard(stage, command::tagged::OtherUsers); }},
    {"userEnroll_cardTagWindow", "another-enrolment",
     [](Stage& stage) { storeCard(stage, kCardWay, command::store::EnrolmentRunning); }},
    {"userEnroll_cardTagWindow", "too-many-administrators",
     [](Stage& stage) { storeCard(stage, kCardWay, command::store::TooManyAdministrators); }},
    {"userEnroll_cardTagWindow", "complete",
     [](Stage& stage) { storeCard(stage, kCardWay, command::store::Done); }},
    {"userEnroll_cardTagWindow", "add-face",
     [](Stage& stage) { storeCard(stage, kEitherWay, command::store::Done); }},
    {"userEnroll_cardTagWindow", "add-face-to-pass",
     [](Stage& stage) { storeCard(stage, kBothWay, command::store::Done); }},
    {"userEnroll_FaceWindow", "half-way",
     [](Stage& stage) { captureFace(stage, capture::Progress, 64); }},
    {"userEnroll_FaceWindow", "all",
     [](Stage& stage) { captureFace(stage, capture::Progress, 100); }},
    {"userEnroll_FaceWindow", "with-glasses",
     [](Stage& stage) { captureFace(stage, capture::Guidance, capture::WithGlasses); }},
    {"userEnroll_FaceWindow", "again",
     [](Stage& stage) { captureFace(stage, capture::Guidance, capture::Again); }},
    {"userEnroll_FaceWindow", "in-use",
     [](Stage& stage) {
         captureFirst(stage, kFaceWay);
         stage.receive(command::FaceEnrolled, capture::FaceInUse, "01023456789");
     }},
    {"userEnroll_FaceWindow", "several-faces",
     [](Stage& stage) { captureFace(stage, capture::SeveralFaces); }},
    {"userEnroll_FaceWindow", "too-many-administrators",
     [](Stage& stage) { captureFace(stage, capture::TooManyAdministrators); }},
    {"userEnroll_FaceWindow", "not-clear",
     [](Stage& stage) { captureFace(stage, capture::NotClear); }},
    {"userEnroll_FaceWindow", "number-in-use",
     [](Stage& stage) { captureFace(stage, capture::IdInUse); }},
    {"userEnroll_FaceWindow", "another-enrolment",
     [](Stage& stage) { storeFace(stage, command::store::EnrolmentRunning); }},
    {"userEnroll_FaceWindow", "store-full",
     [](Stage& stage) { storeFace(stage, command::store::StoreFull); }},
    {"userEnroll_FaceWindow", "no-answer",
     [](Stage& stage) {
         captureFace(stage, capture::Progress, 100);
         stage.receive(command::FaceEnrolled, capture::Done);
         expire(stage);
     }},
    {"userEnroll_FaceWindow", "no-controller",
     [](Stage& stage) {
         captureFace(stage, capture::Progress, 64);
         stage.loseController();
     }},
    {"userEnroll_FaceWindow", "failed", [](Stage& stage) { storeFace(stage, 1); }},
    {"userEnroll_FaceWindow", "administrator-not-stored",
     [](Stage& stage) { storeFace(stage, command::store::TooManyAdministrators); }},
    {"userEnroll_FaceWindow", "complete",
     [](Stage& stage) { storeFace(stage, command::store::Done); }},
};

}  // namespace

AreaStates enrolmentStates() {
    return kStates;
}
