#include <QLoggingCategory>
#include <iterator>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"

Q_LOGGING_CATEGORY(simSoundLog, "zel.sim.sound", QtInfoMsg)

namespace {

constexpr int kMostBrightness = 10;
constexpr int kMostVolume = 10;

/// What an alarm or a refusal can sound like, by its number in the settings.
constexpr const char* kChoices[] = {"siren", "bell", "buzzer", "chime", "beeps"};

constexpr struct {
    quint16 number;
    const char* name;
} kSounds[] = {{command::sound::Wake, "wake"},
               {command::sound::Accepted, "accepted"},
               {command::sound::Error, "error"}};

/// What somebody in front of the terminal would see and hear: the brightness and the volume in
/// force, which may be tried without being stored, and the sounds.
class ScreenSoundSubject : public Subject {
 public:
    explicit ScreenSoundSubject(Device& device) : Subject(device) {
        onRequest(command::SetBrightness, [this](const Request& request) {
            if (request.p2 >= 1 && request.p2 <= kMostBrightness)
                set(brightness_, request.p2);
        });
        onRequest(command::SetVolume, [this](const Request& request) {
            if (request.p2 <= kMostVolume)
                set(volume_, request.p2);
        });
        onRequest(command::ChooseSound, [this](const Request& request) { choose(request); });
        onRequest(command::PlaySound, [this](const Request& request) {
            const auto number = request.record<quint16>();
            for (const auto& sound : kSounds) {
                if (number == sound.number)
                    play(QLatin1String(sound.name));
            }
        });
        onWord("shown", "say which brightness and volume are in force, and the last sound",
               [this](const QString&) { return done(text()); });

        QObject::connect(&device_, &Device::settingsChanged, &context_, [this] { follow(); });
        follow();
    }

 private:
    /// What is stored comes into force, but what is not about them ends no trial.
    void follow() {
        const _gui_menu_& menu = device_.settings();
        if (menu.screen.brightness != storedBrightness_)
            brightness_ = storedBrightness_ = menu.screen.brightness;
        if (menu.sound.volume != storedVolume_)
            volume_ = storedVolume_ = menu.sound.volume;
    }

    void set(int& level, int value) {
        level = value;
        device_.stateChanged();
    }

    void choose(const Request& request) {
        using namespace command::sound_choice;
        if ((request.p1 != Alarm && request.p1 != RecognitionFailure) ||
            request.p2 >= std::size(kChoices))
            return;
        play((request.p1 == Alarm ? QStringLiteral("alarm ") : QStringLiteral("refusal ")) +
             QLatin1String(kChoices[request.p2]));
    }

    void play(const QString& name) {
        sound_ = name;
        qCInfo(simSoundLog, "plays %s", qUtf8Printable(name));
        device_.stateChanged();
    }

    QString text() const {
        return QStringLiteral("brightness %1 volume %2 sound %3")
            .arg(brightness_)
            .arg(volume_)
            .arg(sound_.isEmpty() ? QStringLiteral("none") : sound_);
    }

    int brightness_ = 0;
    int volume_ = 0;
    int storedBrightness_ = -1;
    int storedVolume_ = -1;
    QString sound_;
    QObject context_;
};

}  // namespace

std::unique_ptr<Subject> makeScreenSoundSubject(Device& device) {
    return std::make_unique<ScreenSoundSubject>(device);
}
