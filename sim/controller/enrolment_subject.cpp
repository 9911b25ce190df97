#include <QLoggingCategory>
#include <QSet>
#include <QTimer>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/common/portrait.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/terminal_link.h"

Q_LOGGING_CATEGORY(simEnrolmentLog, "zel.sim.enrolment", QtInfoMsg)

namespace {

namespace capture = command::capture;

constexpr int kDigits = 11;
constexpr int kAllPercent = 100;
constexpr int kPercentAtOnce = 5;
constexpr int kUsualPace = 120;  // milliseconds between two reports
constexpr int kSlowness = 20;
constexpr quint8 kCardType = 1;

struct Text16 {
    char text[16];
};

/// The enrolment at the terminal: the card and the face that are captured, the numbers that are
/// given, and what is stored of it in the end. One at a time.
class EnrolmentSubject : public Subject {
 public:
    explicit EnrolmentSubject(Device& device) : Subject(device) {
        onRequest(command::StartEnrolment, [this](const Request&) { start(); });
        onRequest(command::AbandonCardTag, [this](const Request&) { stop(); });
        onRequest(command::CheckUserId, [this](const Request& request) { checkId(request); });
        onRequest(command::CameraRun, [this](const Request& request) {
            camera_ =
                request.p1 == command::camera::On && request.p2 == command::camera::ForEnrolment;
            if (request.p1 == command::camera::Off)
                stop();
        });
        onRequest(command::StartFaceCapture, [this](const Request& request) {
            if (const auto user = request.record<_gui_user_>())
                startFace(*user);
        });
        onRequest(command::AbandonFaceEnrolment, [this](const Request&) {
            stop();
            device_.send(command::FaceEnrolmentAbandoned);
        });
        onRequest(command::ChangeUser, [this](const Request& request) {
            const auto user = request.record<_gui_user_>();
            if (user && device_.registersCard())
                registerCard(*user);
        });
        onRequest(command::StoreUser, [this](const Request& request) {
            if (const auto user = request.record<_gui_user_>())
                store(*user);
        });
        onWord("enrol-face",
               "good|slow|stall|used|N: someone looks into the camera that enrols; N "
               "is a result, as 14",
               [this](const QString& text) { return face(text); });
        onWord("enrol-pace", "MS: between two reports of a capture",
               [this](const QString& text) { return setPace(text); });
        onWord("enrolment", "what an enrolment waits for: card, face or nothing",
               [this](const QString&) {
                   return done(waits_ == Waits::Card   ? QStringLiteral("card")
                               : waits_ == Waits::Face ? QStringLiteral("face")
                                                       : QStringLiteral("nothing"));
               });
        QObject::connect(&reports_, &QTimer::timeout, &reports_, [this] { report(); });
        QObject::connect(&device_.link(), &TerminalLink::disconnected, &reports_, [this] {
            camera_ = false;
            stop();
        });
    }

 private:
    enum class Waits { Nothing, Card, Registration, Face };

    void setWaits(Waits waits) {
        if (waits_ == waits)
            return;
        if (waits_ == Waits::Card)
            device_.setCardTaker({});
        waits_ = waits;
        device_.setRegistersCard(waits == Waits::Registration);
        device_.stateChanged();
    }

    /// Whatever is captured is not any more.
    void stop() {
        reports_.stop();
        cardRead_.clear();
        cardRegistered_.clear();
        faceCaptured_ = false;
        setWaits(Waits::Nothing);
    }

    // --- Numbers -------------------------------------------------------------------------

    QSet<QString> numbersInUse(const QString& besides = {}) {
        QSet<QString> numbers;
        for (const _gui_user_& user : device_.users().users()) {
            if (fieldText(user.userId) != besides || besides.isEmpty())
                numbers << fieldText(user.userId) << fieldText(user.customerId);
        }
        return numbers;
    }

    QString freeNumber() {
        const QSet<QString> taken = numbersInUse();
        qint64 number = 1090000001;
        const auto text = [&number] {
            return QStringLiteral("%1").arg(number, kDigits, 10, QLatin1Char('0'));
        };
        while (taken.contains(text()))
            ++number;
        return text();
    }

    void checkId(const Request& request) {
        const QString id = QString::fromUtf8(request.payload);
        const bool wrong = id.size() != kDigits;
        device_.send(command::UserIdChecked, wrong ? command::id_check::WrongLength
                                             : numbersInUse().contains(id)
                                                 ? command::id_check::InUse
                                                 : command::id_check::Free);
    }

    // --- Card ----------------------------------------------------------------------------

    void start() {
        stop();
        if (device_.settings().registration.autoId == 1)
            device_.send(command::AutomaticUserId, 0, 0, freeNumber().toUtf8());
        setWaits(Waits::Card);
        device_.setCardTaker([this](const QString& number) {
            Text16 read{};
            setFieldText(read.text, number);
            cardRead_ = fieldText(read.text);
            setWaits(Waits::Registration);
            device_.sendRecord(command::CardEnrolled, command::answer::Done, kCardType, read);
        });
    }

    void registerCard(const _gui_user_& user) {
        const quint8 result = verdict(user);
        device_.send(command::UserChanged, result);
        if (result != command::store::Done) {
            stop();
            return;
        }
        const auto owner = device_.users().findByCard(cardRead_);
        const QString id = fieldText(user.userId);
        const bool own = owner && fieldText(owner->userId) == id;
        const bool free = !owner && fieldText(user.cardNumber) == cardRead_;
        cardRegistered_ = free ? cardRead_ : QString();
        setWaits(Waits::Nothing);
        device_.send(command::CardTagged, free  ? command::tagged::Done
                                          : own ? command::tagged::OwnAlready
                                                : command::tagged::OtherUsers);
    }

    // --- Face ----------------------------------------------------------------------------

    void startFace(const _gui_user_& user) {
        stop();
        // Who is in the way of storing is told before somebody looks into the camera in vain.
        const quint8 result = verdict(user);
        if (result == command::store::TooManyAdministrators) {
            device_.send(command::FaceEnrolled, capture::TooManyAdministrators);
        } else if (result != command::store::Done) {
            device_.send(command::FaceEnrolled, capture::IdInUse);
        } else if (camera_) {
            device_.send(command::FaceEnrolled, capture::Guidance,
                         user.glasses == 1 ? capture::WithGlasses : capture::WithoutGlasses);
            setWaits(Waits::Face);
        }
    }

    QString face(const QString& text) {
        bool isNumber = false;
        const int result = text.toInt(&isNumber);
        if (waits_ != Waits::Face)
            return failed(QStringLiteral("no enrolment waits for a face"));
        const bool slow = text == QLatin1String("slow");
        percent_ = 0;
        result_ = capture::Done;
        endsAt_ = kAllPercent;
        if (text == QLatin1String("used")) {
            result_ = capture::FaceInUse;
            endsAt_ = 30;
        } else if (text == QLatin1String("stall")) {
            result_ = 0;
            endsAt_ = 40;
        } else if (isNumber && result > capture::Progress && result <= 255) {
            result_ = static_cast<quint8>(result);
            endsAt_ = 50;
        } else if (text != QLatin1String("good") && !slow) {
            return failed(QStringLiteral("good, slow, stall, used or a result?"));
        }
        slow_ = slow;
        reports_.start(slow ? pace_ * kSlowness : pace_);
        return done();
    }

    QString setPace(const QString& text) {
        bool ok = false;
        const int pace = text.toInt(&ok);
        if (!ok || pace < 0 || pace > 10000)
            return failed(QStringLiteral("expected milliseconds up to 10000"));
        pace_ = pace;
        return done();
    }

    void report() {
        if (percent_ < endsAt_) {
            percent_ += kPercentAtOnce;
            // Whoever is slow has looked away.
            if (slow_ && percent_ == kAllPercent / 2)
                device_.send(command::FaceEnrolled, capture::Guidance, capture::Again);
            device_.send(command::FaceEnrolled, capture::Progress, static_cast<quint8>(percent_));
            return;
        }
        reports_.stop();
        if (result_ == 0)
            return;
        QByteArray whose;
        if (result_ == capture::FaceInUse)
            whose = faceOwner().toUtf8();
        faceCaptured_ = result_ == capture::Done;
        setWaits(Waits::Nothing);
        device_.send(command::FaceEnrolled, result_, 0, whose);
    }

    QString faceOwner() {
        for (const _gui_user_& user : device_.users().users()) {
            if (user.facePresent == 1)
                return fieldText(user.customerId);
        }
        return {};
    }

    // --- Storing -------------------------------------------------------------------------

    /// What keeps @p user from being stored, whatever has been captured.
    quint8 verdict(const _gui_user_& user) {
        const QString id = fieldText(user.userId);
        const auto former = device_.users().find(id);
        const QString number = fieldText(user.customerId);
        const UserCounts& counts = device_.users().counts();
        const bool administrates = former && former->level == UserLevel::Administrator;
        if (!number.isEmpty() && numbersInUse(id).contains(number))
            return command::answer::Failed;
        if (user.level == UserLevel::Administrator && !administrates &&
            counts.admin >= UserStore::kMostAdministrators)
            return command::store::TooManyAdministrators;
        if (!former && counts.all >= UserStore::kMostUsers)
            return command::store::StoreFull;
        return command::store::Done;
    }

    void store(_gui_user_ user) {
        if (user.userId[0] == '\0')
            setFieldText(user.userId,
                         user.customerId[0] != '\0' ? fieldText(user.customerId) : freeNumber());
        const QString id = fieldText(user.userId);
        const auto former = device_.users().find(id);
        const QString card = fieldText(user.cardNumber);
        quint8 result = verdict(user);
        // Only what has been captured is there.
        const bool hasCard =
            !card.isEmpty() && (card == cardRegistered_ || (former && former->cardPresent == 1 &&
                                                            fieldText(former->cardNumber) == card));
        const bool hasFace = faceCaptured_ || (former && former->facePresent == 1);
        if ((user.cardPresent == 1 && !hasCard) || (user.facePresent == 1 && !hasFace))
            result = command::answer::Failed;
        Text16 stored{};
        if (result == command::store::Done) {
            if (faceCaptured_) {
                setFieldText(user.picture, id + QStringLiteral(".jpg"));
                portrait::save(device_.dataPath({}), id, id.right(3).toInt());
            }
            device_.users().store(user);
            device_.usersChanged();
            std::memcpy(stored.text, user.userId, sizeof stored.text);
            qCInfo(simEnrolmentLog, "user %s enrolled", qUtf8Printable(id));
        }
        cardRegistered_.clear();
        faceCaptured_ = false;
        device_.sendRecord(command::UserStored, result, 0, stored);
        if (result == command::store::Done && device_.settings().network.useManager == 1)
            device_.reportUser(user);
    }

    Waits waits_ = Waits::Nothing;
    bool camera_ = false;  // runs, for an enrolment
    QString cardRead_;
    QString cardRegistered_;  // to be stored
    bool faceCaptured_ = false;
    QTimer reports_;
    int pace_ = kUsualPace;
    int percent_ = 0;
    int endsAt_ = 0;
    quint8 result_ = 0;
    bool slow_ = false;
};

}  // namespace

std::unique_ptr<Subject> makeEnrolmentSubject(Device& device) {
    return std::make_unique<EnrolmentSubject>(device);
}
