#include <QTimer>
#include <algorithm>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/terminal_link.h"

namespace {

namespace search = command::search;
namespace asks = command::asks;

constexpr int kUsualPatience = 20000;  // milliseconds, for a card
constexpr int kUsualPace = 60;         // milliseconds between two reports of a transfer
constexpr quint32 kReports = 20;       // of a transfer, about
constexpr int kDigits = 11;
constexpr quint8 kTooManyForWireless = 15;

/// Users that are looked for at the terminal, and their transfer to the access controller.
class SearchSubject : public Subject {
 public:
    explicit SearchSubject(Device& device) : Subject(device) {
        onRequest(command::SearchUser, [this](const Request& request) { begin(request); });
        onRequest(command::AbandonCardTag, [this](const Request&) { stop(search::ByCard); });
        onRequest(command::CameraRun, [this](const Request& request) {
            if (request.p1 == command::camera::Off)
                stop(search::ByFace);
        });
        onRequest(command::TextEntered, [this](const Request& request) {
            checkNumber(QString::fromUtf8(request.payload));
        });
        onRequest(command::UploadUsers, [this](const Request& request) { upload(request); });

        onWord("search-time", "MS: how long a search waits for a card",
               [this](const QString& text) { return setNumber(text, &patience_); });
        onWord("upload-pace", "MS: between two reports of a transfer to the access controller",
               [this](const QString& text) {
                   const QString answer = setNumber(text, &pace_);
                   transfer_.setInterval(pace_);
                   return answer;
               });
        onWord("access-controller", "ok|away|full|wireless: how transfers to it end",
               [this](const QString& text) { return setOutcome(text); });

        patienceTimer_.setSingleShot(true);
        QObject::connect(&patienceTimer_, &QTimer::timeout, &patienceTimer_, [this] {
            device_.setCardTaker({});
            none(search::ByCard, asks::NothingTagged);
        });
        QObject::connect(&transfer_, &QTimer::timeout, &transfer_, [this] { transfer(); });
        QObject::connect(&device_.link(), &TerminalLink::disconnected, &transfer_, [this] {
            stop(waits_);
            transfer_.stop();
        });
    }

 private:
    void checkNumber(const QString& number) {
        quint8 result = command::answer::Failed;
        if (number.size() != kDigits)
            result = command::number_check::WrongLength;
        else if (device_.users().findByNumber(number))
            result = command::number_check::Registered;
        device_.send(command::NumberChecked, result);
    }

    // --- Searching -----------------------------------------------------------------------

    void begin(const Request& request) {
        stop(waits_);
        device_.send(command::UserSearchStarted);
        switch (request.p1) {
            case search::ByCard:
                device_.setCardTaker([this](const QString& number) {
                    stop(search::ByCard);
                    answer(search::ByCard, device_.users().findByCard(number));
                });
                patienceTimer_.start(patience_);
                waits_ = request.p1;
                break;
            case search::ByFace:
                device_.setFaceTaker([this](const QString& number) {
                    auto user = device_.users().find(number);
                    if (user && user->facePresent != 1)
                        user.reset();
                    answer(search::ByFace, user);
                });
                waits_ = request.p1;
                break;
            default:
                answer(request.p1,
                       device_.users().findByNumber(QString::fromUtf8(request.payload)));
                break;
        }
    }

    void stop(quint8 type) {
        if (waits_ != type)
            return;
        patienceTimer_.stop();
        if (type == search::ByCard)
            device_.setCardTaker({});
        else if (type == search::ByFace)
            device_.setFaceTaker({});
        waits_ = 0;
    }

    void answer(quint8 type, const std::optional<_gui_user_>& user) {
        waits_ = 0;
        if (user)
            device_.sendRecord(command::UserFound, command::answer::Done, type, *user);
        else
            none(type, asks::NotRegistered);
    }

    void none(quint8 type, quint8 reason) {
        waits_ = 0;
        device_.sendRecord(command::UserFound, command::answer::Failed, type, _gui_user_{});
        device_.send(command::UserDeleted, reason,
                     type == search::ByCard ? asks::ForCard
                     : type == search::ById ? asks::ForId
                                            : asks::ForFace);
    }

    // --- The transfer --------------------------------------------------------------------

    void upload(const Request& request) {
        if (request.p2 == command::upload::Cancel) {
            if (transfer_.isActive())
                end(4);
        } else if (transfer_.isActive()) {
            device_.send(command::UsersUploaded, 1);
        } else if (outcome_ != 0) {
            device_.send(command::UsersUploaded, outcome_);
        } else {
            if (request.p1 == command::upload::All)
                setUnsent(device_.users().counts().all);
            step_ = qMax(1U, device_.settings().users.unsent / kReports);
            transfer_.start(pace_);
        }
    }

    void transfer() {
        const quint32 left = device_.settings().users.unsent;
        setUnsent(left - qMin(left, step_));
        device_.sendRecord(command::UserCountsAnswer, 0, 0, device_.settings().users);
        if (device_.settings().users.unsent == 0)
            end(0);
    }

    void end(quint8 result) {
        transfer_.stop();
        device_.send(command::UsersUploaded, result);
    }

    void setUnsent(quint32 count) {
        _gui_menu_ menu = device_.settings();
        menu.users.unsent = count;
        device_.setSettings(menu);
    }

    // --- Words ---------------------------------------------------------------------------

    QString setNumber(const QString& text, int* number) {
        bool ok = false;
        const int given = text.toInt(&ok);
        if (!ok || given < 0 || given > 60000)
            return failed(QStringLiteral("expected a number up to 60000"));
        *number = given;
        return done();
    }

    QString setOutcome(const QString& text) {
        const struct {
            const char* word;
            quint8 result;
        } outcomes[] = {{"ok", 0}, {"away", 2}, {"full", 3}, {"wireless", kTooManyForWireless}};
        const auto* found =
            std::find_if(std::begin(outcomes), std::end(outcomes),
                         [&](const auto& one) { return text == QLatin1String(one.word); });
        if (found == std::end(outcomes))
            return failed(QStringLiteral("ok, away, full or wireless?"));
        outcome_ = found->result;
        return done();
    }

    QTimer patienceTimer_;
    QTimer transfer_;
    int patience_ = kUsualPatience;
    int pace_ = kUsualPace;
    quint8 waits_ = 0;  // one of command::search, 0 for none
    quint8 outcome_ = 0;
    quint32 step_ = 0;
};

}  // namespace

std::unique_ptr<Subject> makeSearchSubject(Device& device) {
    return std::make_unique<SearchSubject>(device);
}
