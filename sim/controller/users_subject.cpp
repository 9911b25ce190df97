#include <QFile>
#include <QLoggingCategory>
#include <QRegularExpression>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/common/portrait.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"

Q_LOGGING_CATEGORY(simUsersLog, "zel.sim.users", QtInfoMsg)

namespace {

/// What the management service answers when it has the user.
constexpr int kTaken = 1000;

/// Pictures are called after it.
bool canBeId(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^[0-9A-Za-z]+$"));
    return form.match(text).hasMatch();
}

bool isIn(quint8 group, const _gui_user_& user) {
    namespace user_group = command::user_group;
    switch (group) {
        case user_group::General:
            return user.level == UserLevel::General;
        case user_group::Administrators:
            return user.level == UserLevel::Administrator;
        case user_group::InOut:
            return user.rights == UserRights::InOutOnly;
        case user_group::FaceOnly:
            return user.authMethod == AuthMethod::Face;
        default:
            return group == user_group::All;
    }
}

/// The users: those that the management service sends, asks for and has deleted, and those that
/// it has not heard of yet.
class UsersSubject : public Subject {
 public:
    explicit UsersSubject(Device& device) : Subject(device) {
        onRequest(command::AskUserCounts, [this](const Request&) {
            device_.sendRecord(command::UserCountsAnswer, 0, 0, device_.settings().users);
        });
        onRequest(command::EnrolNetworkUser, [this](const Request& request) { enrol(request); });
        onRequest(command::DeleteUser, [this](const Request& request) { remove(request); });
        onRequest(command::DeleteUserGroup,
                  [this](const Request& request) { removeGroup(request); });
        onRequest(command::ChangeUser, [this](const Request& request) {
            // The card step of an enrolment uses the same frame.
            if (!device_.registersCard())
                change(request);
        });
        onRequest(command::AskUserData, [this](const Request& request) {
            if (const auto user = find(request))
                device_.reportUser(*user);
        });
        onRequest(command::AskUnsentUsers, [this](const Request&) { offerOldest(); });
        onRequest(command::UserReported, [this](const Request& request) {
            const auto report = request.record<UserReported>();
            if (!report || report->resultCode != kTaken)
                return;
            device_.users().setReported(fieldText(report->userId));
            offerOldest();
        });

        onWord("users", "[N]: list the users, or fill the store up or cut it down to N of them",
               [this](const QString& text) { return text.isEmpty() ? list() : fill(text); });
    }

 private:
    void enrol(const Request& request) {
        const auto user = request.record<_gui_user_>();
        if (!user)
            return;
        if (!canBeId(fieldText(user->userId)))
            return changedByService();
        const QString id = fieldText(user->userId);
        const QString picture = fieldText(user->picture);
        device_.users().store(*user, true);
        if (!picture.isEmpty() && !picture.contains(QLatin1Char('/')))
            portrait::adopt(device_.dataPath({}), id, picture);
        qCInfo(simUsersLog, "user %s enrolled by the management service", qUtf8Printable(id));
        changedByService();
    }

    void remove(const Request& request) {
        const auto user = find(request);
        const bool removed = user && device_.users().remove(fieldText(user->userId));
        device_.usersChanged();
        // Nobody stands before the terminal to read a popup when the service has ordered it.
        if (request.p1 == command::ordered::ByService)
            changedByService();
        else
            device_.send(command::UserDeleteResult,
                         removed ? command::answer::Done : command::answer::Failed);
    }

    void change(const Request& request) {
        const auto user = request.record<_gui_user_>();
        const QString number = user ? fieldText(user->customerId) : QString();
        const auto owner = device_.users().findByNumber(number);
        const bool refused = !user || !canBeId(fieldText(user->userId)) ||
                             (owner && fieldText(owner->userId) != fieldText(user->userId));
        if (!refused) {
            device_.users().store(*user);
            // Whoever has no picture any more is not shown with one.
            const QString name = QLatin1Char('/') + fieldText(user->userId) + QLatin1String(".jpg");
            for (const char* folder : {"user", "thumb"}) {
                if (user->picture[0] == '\0')
                    QFile::remove(device_.dataPath(QLatin1String(folder)) + name);
            }
            device_.usersChanged();
        }
        device_.send(command::UserChanged,
                     refused ? command::answer::Failed : command::answer::Done);
    }

    void removeGroup(const Request& request) {
        device_.users().removeIf(
            [&request](const _gui_user_& user) { return isIn(request.p1, user); });
        device_.usersChanged();
        device_.send(command::UserGroupDeleted, command::answer::Done, request.p1);
        if (request.p2 == command::ordered::ByService)
            changedByService();
    }

    /// The settings record counts the users.
    void changedByService() {
        device_.usersChanged();
        device_.sendRecord(command::SettingsChanged, 0, 0, device_.settings());
    }

    /// The user whose identifier or card number is the payload.
    std::optional<_gui_user_> find(const Request& request) {
        struct Id {
            char text[16];
        };
        const auto id = request.record<Id>();
        if (!id)
            return {};
        const auto user = device_.users().find(fieldText(id->text));
        return user ? user : device_.users().findByCard(fieldText(id->text));
    }

    void offerOldest() {
        if (const auto user = device_.users().oldestUnreported())
            device_.reportUser(*user);
    }

    QString fill(const QString& text) {
        constexpr int kMost = 10000;
        bool ok = false;
        const int count = text.toInt(&ok);
        if (!ok || count < 0 || count > kMost)
            return failed(QStringLiteral("expected a number up to %1").arg(kMost));
        const quint32 unsent = device_.settings().users.unsent;
        device_.users().fill(count, device_.now());
        device_.usersChanged();
        // The access controller knows of them, too.
        _gui_menu_ menu = device_.settings();
        menu.users.unsent = qMin(unsent, menu.users.all);
        device_.setSettings(menu);
        changedByService();
        return done(QString::number(device_.settings().users.all));
    }

    QString list() {
        QString list;
        for (const _gui_user_& user : device_.users().users())
            list +=
                QStringLiteral("%1 card %2 %3\n")
                    .arg(fieldText(user.userId), fieldText(user.cardNumber), fieldText(user.name));
        return list + done();
    }
};

}  // namespace

std::unique_ptr<Subject> makeUsersSubject(Device& device) {
    return std::make_unique<UsersSubject>(device);
}
