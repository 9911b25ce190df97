#include <QLoggingCategory>
#include <QTimer>
#include <cmath>
#include <optional>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/common/portrait.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/work_status.h"

Q_LOGGING_CATEGORY(simDoorLog, "zel.sim.door", QtInfoMsg)

namespace {

namespace failure = command::failure;

constexpr quint8 kFaceScore = 97;
constexpr int kMostMeals = 99;
constexpr int kFramesPerSecond = 30;
/// How long the box shows that a face was recognised or not, in milliseconds.
constexpr int kVerdictTime = 2000;

int modeOfKey(quint8 key) {
    constexpr int kModes[] = {work::In, work::Out, work::Break, work::Return};
    return kModes[key - command::key::In];
}

quint8 keyOfMode(int mode) {
    for (quint8 key = command::key::In; key <= command::key::Return; ++key) {
        if (modeOfKey(key) == mode)
            return key;
    }
    return 0;
}

/// Faces and cards at the door, what comes of them, and the events that are recorded.
class RecognitionSubject : public Subject {
 public:
    explicit RecognitionSubject(Device& device) : Subject(device) {
        onRequest(command::RecognitionMode, [this](const Request& request) {
            recognises_ = request.p1 == command::recognition::On;
            watchOrNot();
        });
        onRequest(command::CameraRun, [this](const Request& request) {
            cameraRuns_ = request.p1 == command::camera::On;
            watchOrNot();
        });
        onRequest(command::RecognitionKey, [this](const Request& request) { key(request); });
        onRequest(command::RecognitionHidden, [this](const Request&) { finishPending(); });
        onRequest(command::AskUnsentLogs, [this](const Request&) { sendOldestUnreported(); });
        onRequest(command::EventReported, [this](const Request& request) {
            if (const auto event = request.record<EventReported>()) {
                device_.logs().setReported(event->number);
                sendOldestUnreported();
            }
        });

        onWord("face", "ID [denied|registered]|unknown|denied: someone looks into the camera",
               [this](const QString& text) { return face(text); });
        onWord("card", "NUMBER: someone holds a card to the reader",
               [this](const QString& text) { return card(text); });
        onWord("track", "on|off: a face moves about before the camera",
               [this](const QString& text) { return track(text); });
        onWord("alarm", "none|arm|disarm: what the next recognition does to the alarm",
               [this](const QString& text) { return alarm(text); });
        onWord("visitor", "a visitor rings at the door", [this](const QString&) {
            reportVisitor();
            return done();
        });
        onWord("unsent", "say that events wait for the management service", [this](const QString&) {
            device_.send(command::UnsentDataWaiting);
            return done();
        });

        pendingTimer_.setSingleShot(true);
        QObject::connect(&pendingTimer_, &QTimer::timeout, &pendingTimer_,
                         [this] { finishPending(); });
        trackTimer_.setTimerType(Qt::PreciseTimer);
        trackTimer_.setInterval(1000 / kFramesPerSecond);
        QObject::connect(&trackTimer_, &QTimer::timeout, &trackTimer_, [this] {
            ++trackFrame_;
            sendBox();
        });
        verdictTimer_.setSingleShot(true);
        verdictTimer_.setInterval(kVerdictTime);
        QObject::connect(&verdictTimer_, &QTimer::timeout, &verdictTimer_, [this] {
            verdict_ = {};
            sendBox();
        });
    }

 private:
    /// What the box says for a while after a decision.
    struct BoxVerdict {
        quint8 state;
        quint8 reason;
    };

    // --- The box -------------------------------------------------------------------------

    /// Whether faces are seen at all: the terminal wants it, and the camera runs.
    bool watches() const { return recognises_ && cameraRuns_; }

    void watchOrNot() {
        if (watches() && faceMoves_) {
            if (!trackTimer_.isActive())
                trackTimer_.start();
            return;
        }
        trackTimer_.stop();
        if (!watches()) {
            verdictTimer_.stop();
            verdict_ = {};
        }
    }

    void sendBox() {
        if (!watches())
            return;
        TrackedFace box{};
        if (verdict_ || faceMoves_) {
            const double t = trackFrame_ / double(kFramesPerSecond);
            box.width = static_cast<qint16>(232 + 16 * std::sin(t * 0.7));
            box.height = static_cast<qint16>(box.width * 296 / 232);
            box.x = static_cast<qint16>(240 + 70 * std::sin(t) - box.width * 0.5);
            box.y = static_cast<qint16>(380 + 50 * std::sin(t * 1.3) - box.height * 0.5);
            const BoxVerdict verdict =
                verdict_.value_or(BoxVerdict{FaceState::Tracking, failure::None});
            box.state = verdict.state;
            box.reason = verdict.reason;
        }
        device_.sendRecord(command::TrackingBox, 0, 0, box);
    }

    void showVerdict(quint8 state, quint8 reason) {
        verdict_ = BoxVerdict{state, reason};
        verdictTimer_.start();
        sendBox();
    }

    QString track(const QString& text) {
        if (text != QLatin1String("on") && text != QLatin1String("off"))
            return failed(QStringLiteral("on or off?"));
        faceMoves_ = text == QLatin1String("on");
        watchOrNot();
        sendBox();
        return done(faceMoves_ && !watches() ? QStringLiteral("seen once the camera runs")
                                             : QString());
    }

    // --- Faces and cards -----------------------------------------------------------------

    QString face(const QString& text) {
        if (cameraRuns_ && device_.giveFace(text))
            return done(QStringLiteral("searched"));
        if (!watches())
            return failed(QStringLiteral("the camera is off: touch the screen first, or say live"));
        if (text == QLatin1String("unknown")) {
            fail(failure::NotRegistered, failure::ByFace);
            return done();
        }
        QString id = text.section(QLatin1Char(' '), 0, 0);
        QString verdict = text.section(QLatin1Char(' '), 1).trimmed();
        if (id == QLatin1String("denied")) {
            const QVector<_gui_user_> users = device_.users().users();
            id = users.isEmpty() ? QString() : fieldText(users.first().userId);
            verdict = QStringLiteral("denied");
        }
        const auto user = device_.users().find(id);
        if (!user)
            return failed(QStringLiteral("no such user, 'users' lists them"));
        if (user->facePresent != 1)
            return failed(QStringLiteral("no face of that user is enrolled"));
        if (verdict == QLatin1String("denied"))
            recognise(*user, failure::ByFace, Verdict::NotPermitted);
        else if (verdict == QLatin1String("registered"))
            recognise(*user, failure::ByFace, Verdict::Registered);
        else if (verdict.isEmpty())
            recognise(*user, failure::ByFace);
        else
            return failed(QStringLiteral("denied or registered?"));
        return done();
    }

    QString card(const QString& text) {
        if (text.isEmpty())
            return failed(QStringLiteral("which card?"));
        if (device_.giveCard(text))
            return done(QStringLiteral("read"));
        if (const auto user = device_.users().findByCard(text))
            recognise(*user, failure::ByCard);
        else
            fail(failure::NotRegistered, failure::ByCard);
        return done();
    }

    void fail(quint8 reason, quint8 method) {
        finishPending();
        if (method == failure::ByFace)
            showVerdict(FaceState::Failed, reason);
        device_.send(command::RecognitionFailed, reason, method);
        record(newLog({}, method, work::AccessOnly), false);
    }

    int mode() const { return work::modeOf(device_.settings(), device_.status()); }

    quint8 judge(const _gui_user_& user, int mode) {
        const _gui_menu_& menu = device_.settings();
        const auto schedule = work::parseRange(fieldText(user.timeSchedule));
        const bool mealOperation = menu.setup.operation == Operation::Meals;
        if ((schedule && !work::contains(*schedule, device_.now().time())) ||
            (mealOperation && mode == work::AccessOnly))
            return Verdict::NoAccessTime;
        // Whoever is to show both has been enrolled with one of them only.
        if (user.authMethod == AuthMethod::FaceAndCard &&
            (user.facePresent != 1 || user.cardPresent != 1))
            return Verdict::NotPermitted;
        if (menu.setup.alarmMode != 0 && user.rights == UserRights::InOutOnly)
            return Verdict::NotPermitted;
        if (mealOperation && mealTaken(fieldText(user.userId), mode))
            return Verdict::MealTaken;
        return Verdict::Accepted;
    }

    bool mealTaken(const QString& userId, int mode) {
        const _gui_menu_& menu = device_.settings();
        if (menu.operation.doorOpenSetting == MealRule::Repeated)
            return false;
        const QDateTime since = work::lastBeginning(work::mealPeriod(menu, mode), device_.now());
        return device_.logs().mealsSince(mode, since, userId) > 0;
    }

    /// Decides by the settings what becomes of the person unless @p given says it.
    void recognise(const _gui_user_& user, quint8 method, std::optional<quint8> given = {}) {
        finishPending();
        const _gui_menu_& menu = device_.settings();
        const int present = mode();
        const quint8 result = given ? *given : judge(user, present);
        const bool attendance = menu.setup.operation == Operation::Attendance;
        const bool fixed = attendance && menu.operation.attendanceMode > AttendanceRule::Chosen;
        const bool accepted = result == Verdict::Accepted;
        const bool known = accepted || result == Verdict::Registered;

        RecognitionResult shown{};
        std::memcpy(shown.userId, user.userId, sizeof shown.userId);
        std::memcpy(shown.customerId, user.customerId, sizeof shown.customerId);
        std::memcpy(shown.name, user.name, sizeof shown.name);
        shown.result = result;
        shown.authMethod = method;
        shown.level = user.level;
        shown.rights = user.rights;
        shown.score = method == failure::ByFace ? kFaceScore : 0;
        shown.demo = menu.setup.demo;
        shown.time = clockTime(device_.now());
        if (accepted && attendance) {
            shown.askAttendance =
                !fixed && (present != work::AccessOnly ||
                           menu.operation.attendanceMode == AttendanceRule::Chosen);
            shown.attendanceEvent = fixed ? keyOfMode(present) : 0;
        }
        if (method == failure::ByFace)
            showVerdict(known ? FaceState::Recognised : FaceState::Failed,
                        known ? failure::None : failure::NotPermitted);
        device_.sendRecord(command::Recognised, 0, 0, shown);

        if (menu.setup.demo != 0 || result == Verdict::Registered)
            return;
        const GUI_LOGDATA log = newLog(user, method, present);
        if (!accepted) {
            record(log, false);
            return;
        }
        if (menu.setup.alarmMode != 0) {
            device_.setArmed(menu.setup.alarmMode == quint8(AlarmMode::Arm));
        }
        const bool meal = menu.setup.operation == Operation::Meals;
        if (meal || shown.askAttendance != 0)
            waitForKey(log);
        else
            record(log, true);
    }

    // --- Events --------------------------------------------------------------------------

    GUI_LOGDATA newLog(const _gui_user_& user, quint8 method, int mode) {
        GUI_LOGDATA log = eventOf(user, device_.now());
        log.authMethod = method;
        log.inOut = static_cast<quint8>(mode);
        log.manageMode = device_.settings().setup.alarmMode;
        log.score = method == failure::ByFace ? kFaceScore : 0;
        return log;
    }

    /// The event waits for the person's choice as long as the terminal shows the result.
    void waitForKey(const GUI_LOGDATA& log) {
        pending_ = log;
        constexpr int kGrace = 1000;
        constexpr int kSecondsIfZero = 3;
        const int seconds = device_.settings().resultSeconds;
        pendingTimer_.start((seconds > 0 ? seconds : kSecondsIfZero) * 1000 + kGrace);
    }

    /// The person chose nothing: attendance is what the time of day makes it, a meal is not had.
    void finishPending() {
        pendingTimer_.stop();
        if (!pending_)
            return;
        const GUI_LOGDATA log = *pending_;
        pending_.reset();
        if (log.inOut < work::Breakfast)
            record(log, true);
    }

    void record(GUI_LOGDATA log, bool accepted) {
        const _gui_menu_& menu = device_.settings();
        log.eventStatus = accepted;
        const bool attendance = menu.setup.operation == Operation::Attendance;
        const bool wanted = !accepted ? menu.operation.saveRecognitionFail != 0
                            : attendance && log.inOut == work::AccessOnly
                                ? menu.operation.saveSimpleAccess != 0
                                : true;
        if (accepted)
            openDoor(log.inOut);
        if (!wanted)
            return;
        const bool report = menu.network.useManager == 1;
        log = device_.logs().add(log, !report);
        qCInfo(simDoorLog, "event %u: user %s mode %d %s", log.number,
               qUtf8Printable(fieldText(log.userId)), log.inOut, accepted ? "accepted" : "refused");
        if (report)
            device_.sendRecord(command::AccessEvent, command::event::New, 0, log);
        if (log.payCount > 0)
            emit device_.statusChanged();
    }

    void openDoor(int mode) {
        const _gui_menu_& menu = device_.settings();
        if (menu.setup.operation == Operation::Meals)
            return;  // the door's bytes say something else then
        const quint8 rule = menu.setup.operation == Operation::Attendance
                                ? menu.operation.doorOpenSetting
                                : quint8(DoorRule::Always);
        if ((rule == DoorRule::OnArrival && mode != work::In && mode != work::Return) ||
            (rule == DoorRule::OnLeaving && mode != work::Out && mode != work::Break))
            return;
        device_.send(command::DoorOpened);
    }

    void sendOldestUnreported() {
        if (const auto log = device_.logs().oldestUnreported())
            device_.sendRecord(command::AccessEvent, command::event::LeftOver, 0, *log);
    }

    // --- Keys of the terminal ------------------------------------------------------------

    void key(const Request& request) {
        const quint8 pressed = request.p1;
        if (pressed == command::key::DoorRing) {
            reportVisitor();
        } else if (pressed == command::key::ScreenHidden) {
            finishPending();
        } else if (pending_ && pressed >= command::key::In && pressed <= command::key::Return &&
                   pending_->inOut < work::Breakfast) {
            pending_->inOut = static_cast<quint8>(modeOfKey(pressed));
            finishPending();
        } else if (pending_ &&
                   (pressed == command::key::PayOne || pressed == command::key::PaySeveral) &&
                   pending_->inOut >= work::Breakfast) {
            pay(pressed == command::key::PayOne ? 1 : request.p2);
        } else if (pending_) {
            waitForKey(*pending_);  // each press gives the person more time
        }
    }

    void pay(int count) {
        if (count < 1 || count > kMostMeals)
            return;
        GUI_LOGDATA log = *pending_;
        pending_.reset();
        pendingTimer_.stop();
        log.payCount = static_cast<quint8>(count);
        record(log, true);
    }

    void reportVisitor() {
        VisitorCallReport report{};
        report.time = clockTime(device_.now());
        setFieldText(report.visiblePicture,
                     QLatin1String(portrait::kVisitor) + QStringLiteral(".jpg"));
        setFieldText(report.infraredPicture,
                     QLatin1String(portrait::kVisitor) + QStringLiteral(".jpg"));
        device_.sendRecord(command::VisitorCall, 0, 0, report);
    }

    QString alarm(const QString& text) {
        const QStringList modes{QStringLiteral("none"), QStringLiteral("arm"),
                                QStringLiteral("disarm")};
        const int mode = modes.indexOf(text);
        if (mode < 0)
            return failed(QStringLiteral("none, arm or disarm?"));
        _gui_menu_ menu = device_.settings();
        menu.setup.alarmMode = static_cast<quint8>(mode);
        device_.setSettings(menu);
        device_.sendRecord(command::SettingsChanged, 0, 0, menu);
        return done();
    }

    QTimer trackTimer_;
    QTimer verdictTimer_;
    QTimer pendingTimer_;
    bool recognises_ = false;  // what the terminal has asked for last
    bool cameraRuns_ = false;
    bool faceMoves_ = false;
    int trackFrame_ = 0;
    std::optional<BoxVerdict> verdict_;
    std::optional<GUI_LOGDATA> pending_;
};

}  // namespace

std::unique_ptr<Subject> makeRecognitionSubject(Device& device) {
    return std::make_unique<RecognitionSubject>(device);
}
