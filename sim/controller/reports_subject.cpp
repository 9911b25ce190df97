#include <cstring>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"

namespace {

/// Reports whose first parameter chooses the terminal's popup.
constexpr struct {
    const char* word;
    quint16 code;
} kPopups[] = {{"enrolment", command::EnrolmentRefused},
               {"delete", command::UserDeleteResult},
               {"firmware", command::FirmwareUpdateAnswer},
               {"logs", command::LogStoreReport}};

/// What the controller tells without much of a state behind it: link tests, resets, and the reports
/// that end in a popup.
class ReportsSubject : public Subject {
 public:
    explicit ReportsSubject(Device& device) : Subject(device) {
        onRequest(command::TestLink, [this](const Request& request) {
            const bool used =
                request.p1 == command::link_test::Server ||
                (request.p1 == command::link_test::Ddns && device_.settings().ddns.use != 0);
            device_.send(command::LinkTested,
                         linksWork_ && used ? command::answer::Done : command::answer::Failed,
                         request.p1);
        });
        onRequest(command::OpenDoor, [this](const Request&) { device_.send(command::DoorOpened); });
        onRequest(command::SpeakText, [this](const Request& request) {
            // The terminal answers the end of a text with a SpeakText without one.
            if (!request.payload.isEmpty())
                device_.send(command::TextSpoken);
        });
        onRequest(command::Initialise, [this](const Request& request) { initialise(request.p1); });
        onRequest(command::FactoryMemoryReset, [this](const Request&) {
            reset(command::initialise::Everything);
            device_.sendRecord(command::SettingsChanged, 0, 0, device_.settings());
        });

        onWord("popup", "enrolment|delete|firmware|logs N: a report with the result N",
               [this](const QString& text) { return popup(text); });
        onWord("linktest", "ok|fail: how link tests end", [this](const QString& text) {
            if (text != QLatin1String("ok") && text != QLatin1String("fail"))
                return failed(QStringLiteral("ok or fail?"));
            linksWork_ = text == QLatin1String("ok");
            return done();
        });
        onWord("sleep", "darken the standby screen", [this](const QString&) {
            device_.send(command::SleepScreen);
            return done();
        });
        onWord("wake", "light the standby screen up", [this](const QString&) {
            device_.send(command::WakeScreen);
            return done();
        });
        onWord("live", "show the live view", [this](const QString&) {
            device_.send(command::ShowLiveView);
            return done();
        });
    }

 private:
    void reset(quint8 what) {
        using namespace command::initialise;
        if (what == Logs || what == Everything)
            device_.removeLogs();
        if (what == Settings || what == Everything)
            device_.setSettings(resetSettings(what == Everything));
        if (what == Everything) {
            for (const _gui_user_& user : device_.users().users())
                device_.users().remove(fieldText(user.userId));
        }
        device_.usersChanged();
    }

    void initialise(quint8 what) {
        reset(what);
        device_.send(command::Initialised,
                     what <= command::initialise::Everything ? command::answer::Done
                                                             : command::answer::Failed,
                     what);
        device_.sendRecord(command::SettingsChanged, 0, 0, device_.settings());
    }

    /// What the factory has set, but for what is no setting. With everything else gone as well the
    /// terminal has to be set up anew.
    _gui_menu_ resetSettings(bool setUpAnew) const {
        const _gui_menu_& menu = device_.settings();
        _gui_menu_ reset = factorySettings();
        reset.commissioned = setUpAnew ? 0 : menu.commissioned;
        std::memcpy(reset.serial, menu.serial, sizeof reset.serial);
        std::memcpy(reset.firmwareVersion, menu.firmwareVersion, sizeof reset.firmwareVersion);
        return reset;
    }

    QString popup(const QString& text) {
        bool ok = false;
        const uint result = text.section(QLatin1Char(' '), 1).trimmed().toUInt(&ok);
        for (const auto& popup : kPopups) {
            if (ok && result <= 255 &&
                text.section(QLatin1Char(' '), 0, 0) == QLatin1String(popup.word)) {
                device_.send(popup.code, static_cast<quint8>(result));
                return done();
            }
        }
        return failed(QStringLiteral("expected enrolment|delete|firmware|logs N"));
    }

    bool linksWork_ = true;
};

}  // namespace

std::unique_ptr<Subject> makeReportsSubject(Device& device) {
    return std::make_unique<ReportsSubject>(device);
}
