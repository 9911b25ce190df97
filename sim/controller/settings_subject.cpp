#include <QLoggingCategory>
#include <QStringList>
#include <cstring>
#include <optional>
#include <utility>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "sim/controller/device.h"
#include "sim/controller/settings_fields.h"
#include "sim/controller/subjects.h"

Q_LOGGING_CATEGORY(simSettingsLog, "zel.sim.settings", QtInfoMsg)

namespace {

NetworkBlock withService(NetworkBlock block, const ServiceNetwork& network) {
    block.useManager = network.useManager;
    std::memcpy(block.own.address, network.address, sizeof network.address);
    std::memcpy(block.own.mask, network.mask, sizeof network.mask);
    std::memcpy(block.own.gateway, network.gateway, sizeof network.gateway);
    std::memcpy(block.own.dns, network.dns, sizeof network.dns);
    std::memcpy(block.own.managerAddress, network.managerAddress, sizeof network.managerAddress);
    block.own.managerPort = network.managerPort;
    return block;
}

OperationBlock withSettings(OperationBlock block, const OperationSettings& settings) {
    block.attendanceMode = settings.attendanceMode;
    block.lunchOff = settings.lunchOff;
    block.saveSimpleAccess = settings.saveSimpleAccess;
    block.supperOff = settings.supperOff;
    block.doorOpenSetting = settings.doorOpenSetting;
    block.doorOpenTime = settings.doorOpenTime;
    block.forcedOpenOff = settings.forcedOpenOff;
    block.forcedCloseOff = settings.forcedCloseOff;
    block.forcedOpen = settings.forcedOpen;
    block.forcedClose = settings.forcedClose;
    block.saveRecognitionFail = settings.saveRecognitionFail;
    block.mealCountView = settings.mealCountView;
    return block;
}

OperationBlock withTimes(OperationBlock block, const OperationTimes& times) {
    block.weekdayIn = times.weekdayIn;
    block.weekdayOut = times.weekdayOut;
    block.saturdayIn = times.saturdayIn;
    block.saturdayOut = times.saturdayOut;
    block.holidayRule = times.holidayRule;
    return block;
}

/// The settings record: every save command of the terminal, and the word `settings`.
class SettingsSubject : public Subject {
 public:
    explicit SettingsSubject(Device& device) : Subject(device) {
        save<FaceBlock>(command::SaveFaceSettings, command::FaceSettingsSaved,
                        [](_gui_menu_& menu, const FaceBlock& face) { menu.face = face; });
        save<ScreenBlock>(
            command::SaveScreenSettings, command::ScreenSettingsSaved,
            [](_gui_menu_& menu, const ScreenBlock& screen) { menu.screen = screen; });
        save<SoundBlock>(command::SaveSoundSettings, command::SoundSettingsSaved,
                         [](_gui_menu_& menu, const SoundBlock& sound) { menu.sound = sound; });
        save<SetupBlock>(command::SaveDeviceSetup, command::DeviceSetupSaved,
                         [](_gui_menu_& menu, const SetupBlock& setup) { menu.setup = setup; });
        onRequest(command::SaveDeviceSetup,
                  [this](const Request& request) { commission(request); });
        save<RegistrationBlock>(command::SaveRegistrationMode, command::RegistrationModeSaved,
                                [](_gui_menu_& menu, const RegistrationBlock& registration) {
                                    menu.registration = registration;
                                });
        save<DdnsBlock>(command::SaveDdns, command::DdnsSaved,
                        [](_gui_menu_& menu, const DdnsBlock& ddns) { menu.ddns = ddns; });
        // The two halves of one save: the first waits for the second, which alone is answered.
        onRequest(command::SaveOperationSettings, [this](const Request& request) {
            firstHalf_ = request.record<OperationSettings>();
            finish(request, kNoAnswer, firstHalf_.has_value());
        });
        onRequest(command::SaveOperationTimes,
                  [this](const Request& request) { saveOperation(request); });
        onRequest(command::SaveNetwork, [this](const Request& request) { saveNetwork(request); });

        onRequest(command::Greeting, [this](const Request&) {
            device_.sendRecord(command::Settings, 0, 0, device_.settings());
        });

        onWord(
            "settings",
            "[FIELD [VALUE]]: list the settings, show one, or set one; 'help settings' for values",
            [this](const QString& text) { return settings(text); }, [] { return values(); });
    }

    QString stateKey() const override { return QStringLiteral("settings"); }

    QJsonObject state() const override {
        const _gui_menu_& menu = device_.settings();
        QJsonObject values;
        for (const settings::Field& field : settings::fields())
            values.insert(QLatin1String(field.name), settings::value(field, menu));
        return values;
    }

    void restore(const QJsonObject& state) override {
        _gui_menu_ menu = device_.settings();
        for (const settings::Field& field : settings::fields()) {
            const QJsonValue value = state.value(QLatin1String(field.name));
            if (value.isUndefined())
                continue;
            const QString error = settings::setValue(field, menu, value.toString());
            if (!error.isEmpty())
                qCWarning(simSettingsLog, "stored value of %s ignored: %s", field.name,
                          qUtf8Printable(error));
        }
        menu.users = device_.settings().users;  // counted anew
        device_.setSettings(menu);
    }

 private:
    static constexpr quint16 kNoAnswer = 0;

    template <typename Block>
    void save(quint16 code, quint16 answer, void (*store)(_gui_menu_&, const Block&)) {
        onRequest(code, [this, answer, store](const Request& request) {
            const auto block = request.record<Block>();
            if (block) {
                _gui_menu_ menu = device_.settings();
                store(menu, *block);
                device_.setSettings(menu);
            }
            finish(request, answer, block.has_value());
        });
    }

    /// A terminal has been set up when a person has saved its setup there.
    void commission(const Request& request) {
        _gui_menu_ menu = device_.settings();
        if (request.p1 != command::save::SetupAtTerminal || !request.record<SetupBlock>() ||
            menu.commissioned != 0)
            return;
        menu.commissioned = 1;
        device_.setSettings(menu);
    }

    void saveOperation(const Request& request) {
        const auto settings = std::exchange(firstHalf_, std::nullopt);
        const auto times = request.record<OperationTimes>();
        if (settings && times) {
            _gui_menu_ menu = device_.settings();
            menu.operation = withTimes(withSettings(menu.operation, *settings), *times);
            device_.setSettings(menu);
        }
        finish(request, command::OperationSettingsSaved, settings && times);
    }

    void saveNetwork(const Request& request) {
        _gui_menu_ menu = device_.settings();
        bool stored = false;
        if (request.p1 == command::save::NetworkByService) {
            if (const auto network = request.record<ServiceNetwork>()) {
                menu.network = withService(menu.network, *network);
                stored = true;
            }
        } else if (const auto network = request.record<NetworkBlock>()) {
            menu.network = *network;
            stored = true;
        }
        if (stored)
            device_.setSettings(menu);
        finish(request, command::NetworkSaved, stored);
    }

    void finish(const Request& request, quint16 answer, bool stored) {
        if (!stored)
            qCWarning(simSettingsLog, "%s with %d bytes refused",
                      command::name(request.code, command::Direction::ToController),
                      request.payload.size());
        if (answer != kNoAnswer)
            device_.send(answer, stored ? command::answer::Done : command::answer::Failed);
    }

    QString settings(const QString& text) {
        _gui_menu_ menu = device_.settings();
        if (text.isEmpty()) {
            QString list;
            for (const settings::Field& field : settings::fields())
                list += line(field, menu) + QLatin1Char('\n');
            return list + done();
        }
        const QString name = text.section(QLatin1Char(' '), 0, 0);
        const settings::Field* field = settings::find(name);
        if (field == nullptr)
            return failed(QStringLiteral("no such field, 'settings' lists them"));
        if (name == text)
            return done(line(*field, menu));

        // Two double quotes stand for an empty text, which a line could not show otherwise.
        QString value = text.section(QLatin1Char(' '), 1).trimmed();
        if (value == QLatin1String("\"\""))
            value.clear();
        const QString error = settings::setValue(*field, menu, value);
        if (!error.isEmpty())
            return failed(error);
        device_.setSettings(menu);
        device_.sendRecord(command::SettingsChanged, 0, 0, device_.settings());
        return done(line(*field, menu));
    }

    static QString values() {
        QString list;
        for (const settings::Field& field : settings::fields())
            list += QLatin1String(field.name) + QStringLiteral(": ") + settings::values(field) +
                    QLatin1Char('\n');
        return list;
    }

    static QString line(const settings::Field& field, const _gui_menu_& menu) {
        return QLatin1String(field.name) + QLatin1Char(' ') + settings::value(field, menu);
    }

    std::optional<OperationSettings> firstHalf_;
};

}  // namespace

std::unique_ptr<Subject> makeSettingsSubject(Device& device) {
    return std::make_unique<SettingsSubject>(device);
}
