#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <QTimer>
#include <array>
#include <iterator>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/terminal_link.h"

namespace {

namespace factory = command::factory;

/// Between two reports of a test whose value goes on changing, in milliseconds.
constexpr int kLiveInterval = 500;
constexpr int kAnyOption = -1;

/// What is under test. Several parts may share a request, and are then told apart by its option.
struct Part {
    enum Kind {
        Result,    ///< a result, for the option in the second parameter
        Switch,    ///< the option itself
        Io,        ///< a level, and that the step is done
        Card,      ///< a result and a card's number
        Address,   ///< a result and six bytes
        Time,      ///< a result and the time
        Versions,  ///< those of the settings
        Version,   ///< one
        Numbers,   ///< 16 bits each
    };

    const char* name;
    quint16 request;
    int option;
    quint16 report;
    Kind kind;
    bool live = false;  ///< reports go on until the test is stopped
    int count = 0;      ///< of numbers
    std::array<int, 3> good{};
    std::array<int, 3> bad{};
    std::array<int, 3> drift{};  ///< how far a number moves by itself
    double scale = 1;            ///< from what is typed to what is reported
} constexpr kParts[] = {
    {"power",
     command::FactoryPowerTest,
     kAnyOption,
     command::FactoryPowerReport,
     Part::Numbers,
     true,
     3,
     {12000, 5000, 3300},
     {9100, 4300, 2700},
     {30, 15, 10},
     1000},
    {"red", command::FactoryLedTest, factory::Red, command::FactoryLedReport, Part::Result},
    {"green", command::FactoryLedTest, factory::Green, command::FactoryLedReport, Part::Result},
    {"blue", command::FactoryLedTest, factory::Blue, command::FactoryLedReport, Part::Result},
    {"relay", command::FactoryIoTest, factory::Relay, command::FactoryIoReport, Part::Io},
    {"exit", command::FactoryIoTest, factory::ExitButton, command::FactoryIoReport, Part::Io},
    {"tamper", command::FactoryIoTest, factory::TamperSwitch, command::FactoryIoReport, Part::Io},
    {"proximity",
     command::FactoryProximityTest,
     kAnyOption,
     command::FactoryProximityReport,
     Part::Numbers,
     true,
     1,
     {450},
     {0xFFFF},
     {2}},
    {"light",
     command::FactoryLightTest,
     kAnyOption,
     command::FactoryLightReport,
     Part::Numbers,
     true,
     1,
     {320},
     {0},
     {3}},
    {"rs422", command::FactoryRs422Test, kAnyOption, command::FactoryRs422Report, Part::Result},
    {"ping", command::FactoryPingTest, kAnyOption, command::FactoryPingReport, Part::Result},
    {"infrared", command::FactoryCameraTest, factory::Infrared, command::FactoryCameraReport,
     Part::Result},
    {"colour", command::FactoryCameraTest, factory::Colour, command::FactoryCameraReport,
     Part::Result},
    {"infrared-picture", command::FactoryCameraSwitch, factory::Infrared,
     command::FactoryCameraSwitched, Part::Switch},
    {"colour-picture", command::FactoryCameraSwitch, factory::Colour,
     command::FactoryCameraSwitched, Part::Switch},
    {"antenna", command::FactoryCardAntennaTest, kAnyOption, command::FactoryCardAntennaReport,
     Part::Result},
    {"card", command::FactoryCardTest, kAnyOption, command::FactoryCardReport, Part::Card},
    {"versions", command::FactoryVersionTest, kAnyOption, command::FactoryVersionReport,
     Part::Versions},
    {"panel", command::FactoryTouchVersion, kAnyOption, command::FactoryTouchVersionReport,
     Part::Version},
    {"clock", command::FactoryClockTest, kAnyOption, command::FactoryClockReport, Part::Time, true},
    {"mac", command::FactoryMacTest, kAnyOption, command::FactoryMacReport, Part::Address},
    {"memory", command::FactoryMemoryTest, kAnyOption, command::FactoryMemoryReport, Part::Result},
};
constexpr std::size_t kCount = std::size(kParts);

/// The words that stand for several parts.
constexpr struct {
    const char* name;
    quint16 request;
} kGroups[] = {{"led", command::FactoryLedTest},
               {"io", command::FactoryIoTest},
               {"camera", command::FactoryCameraTest}};

constexpr char kUsage[] =
    "[NAME ok|fail|silent, NAME VALUE...]: show or change what the factory tests find";

/// The factory tests, of a board without faults unless it is told otherwise. A test reports as long
/// as it runs, and nothing to one that asks for what the board does not have.
class FactorySubject : public Subject {
 public:
    explicit FactorySubject(Device& device) : Subject(device) {
        for (std::size_t i = 0; i < kCount; ++i) {
            setGood(i);
            if (i == 0 || kParts[i].request != kParts[i - 1].request)
                onRequest(kParts[i].request, [this](const Request& request) { test(request); });
        }
        onRequest(command::FactoryMode, [this](const Request& request) {
            if (request.p1 == factory::Leave)
                running_.clear();
        });
        onRequest(command::UpdateMicrocontroller, [this](const Request&) { update(); });
        onWord(
            "factory", kUsage, [this](const QString& text) { return change(text); },
            [] {
                QStringList names;
                for (const Part& part : kParts)
                    names.append(QLatin1String(part.name));
                for (const auto& group : kGroups)
                    names.append(QLatin1String(group.name));
                return QStringLiteral(
                           "NAME is one of %1, or all. Values are those of power (volts, three), "
                           "proximity (mm), light (lx), card (its number) and mac.\n")
                    .arg(names.join(QLatin1Char(' ')));
            });
        live_.setInterval(kLiveInterval);
        QObject::connect(&live_, &QTimer::timeout, &live_, [this] {
            ++beat_;
            reportLive();
        });
    }

 private:
    enum class State { Ok, Fail, Silent };

    void test(const Request& request) {
        if (request.p1 == factory::Stop)
            running_.remove(request.code);
        if (request.p1 != factory::Start)
            return;
        for (std::size_t i = 0; i < kCount; ++i) {
            const Part& part = kParts[i];
            if (part.request != request.code ||
                (part.option != kAnyOption && part.option != request.p2))
                continue;
            running_.insert(request.code, i);
            report(i);
            if (part.live)
                live_.start();
        }
    }

    void reportLive() {
        bool any = false;
        for (const std::size_t i : qAsConst(running_)) {
            if (!kParts[i].live)
                continue;
            any = true;
            report(i);
        }
        if (!any)
            live_.stop();
    }

    void report(std::size_t i) {
        if (states_[i] == State::Silent)
            return;
        const Part& part = kParts[i];
        const bool ok = states_[i] == State::Ok;
        const quint8 result = ok ? command::answer::Done : command::answer::Failed;
        const auto option = static_cast<quint8>(qMax(part.option, 0));
        switch (part.kind) {
            case Part::Result:
                device_.send(part.report, result, option);
                break;
            case Part::Switch:
                if (ok)
                    device_.send(part.report, option);
                break;
            case Part::Io:
                device_.send(part.report, option, ok ? 1 : 0);
                device_.send(command::FactoryIoStepDone, option);
                break;
            case Part::Card:
                device_.send(part.report, result, 0, text(ok ? card_ : QString()));
                break;
            case Part::Address:
                device_.send(part.report, command::answer::Done, 0,
                             ok ? mac_ : QByteArray(kAddress, '\0'));
                break;
            case Part::Time:
                device_.sendRecord(part.report, result, 0, clockTime(device_.now()));
                break;
            case Part::Versions:
                device_.send(part.report, 0, 0, ok ? versions() : QByteArray(kVersions, '\0'));
                break;
            case Part::Version:
                device_.send(part.report, 0, 0, text(ok ? QStringLiteral("2.1") : QString()));
                break;
            case Part::Numbers:
                device_.send(part.report, 0, 0, numbers(i));
                break;
        }
    }

    static QByteArray text(const QString& of) {
        char field[kText];
        setFieldText(field, of);
        return {field, kText};
    }

    QByteArray versions() const {
        const _gui_menu_& menu = device_.settings();
        QByteArray all;
        for (const auto& version :
             {menu.firmwareVersion, menu.kernelVersion, menu.mainBoardVersion, menu.ioBoardVersion})
            all.append(version, sizeof menu.firmwareVersion);
        return all;
    }

    /// Those of the part, a little beside where they were before.
    QByteArray numbers(std::size_t i) const {
        constexpr int kSwing[] = {0, 1, 0, -1};
        const Part& part = kParts[i];
        QByteArray bytes;
        for (std::size_t n = 0; n < static_cast<std::size_t>(part.count); ++n) {
            const int value =
                states_[i] == State::Fail
                    ? part.bad[n]
                    : qBound(0, values_[i][n] + part.drift[n] * kSwing[beat_ % 4], 0xFFFF);
            bytes.append(static_cast<char>(value & 0xFF));
            bytes.append(static_cast<char>(value >> 8));
        }
        return bytes;
    }

    void update() {
        _gui_menu_ menu = device_.settings();
        const QString version = fieldText(menu.ioBoardVersion);
        const int minor = version.section(QLatin1Char('.'), -1).toInt() + 1;
        setFieldText(menu.ioBoardVersion, version.section(QLatin1Char('.'), 0, 0) +
                                              QLatin1Char('.') + QString::number(minor));
        device_.setSettings(menu);
        device_.sendRecord(command::SettingsChanged, 0, 0, menu);
        device_.send(command::FactoryVersionReport, 0, 0, versions());
    }

    // --- The word --------------------------------------------------------------------------

    QString change(const QString& line) {
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.isEmpty())
            return done(list());
        const QStringList values = words.mid(1);
        QVector<std::size_t> parts;
        for (std::size_t i = 0; i < kCount; ++i) {
            if (isMeant(kParts[i], words.first()))
                parts.append(i);
        }
        if (parts.isEmpty())
            return failed(QStringLiteral("there is no such part"));
        const int state =
            QStringList{QStringLiteral("ok"), QStringLiteral("fail"), QStringLiteral("silent")}
                .indexOf(values.join(QLatin1Char(' ')));
        if (state < 0 && (parts.size() != 1 || !setValues(parts.first(), values)))
            return failed(QStringLiteral("ok, fail, silent, or values that this part has?"));
        for (const std::size_t i : qAsConst(parts)) {
            states_[i] = static_cast<State>(qMax(state, 0));
            if (state == 0)
                setGood(i);
        }
        // What is watched right now is seen at once.
        reportLive();
        return done();
    }

    static bool isMeant(const Part& part, const QString& name) {
        if (name == QLatin1String("all") || name == QLatin1String(part.name))
            return true;
        for (const auto& group : kGroups) {
            if (group.request == part.request && name == QLatin1String(group.name))
                return true;
        }
        return false;
    }

    void setGood(std::size_t i) {
        values_[i] = kParts[i].good;
        if (kParts[i].kind == Part::Card)
            card_ = QStringLiteral("10000001");
        if (kParts[i].kind == Part::Address)
            mac_ = QByteArray::fromHex("024b5a000001");
    }

    bool setValues(std::size_t i, const QStringList& values) {
        const Part& part = kParts[i];
        if (part.kind == Part::Card && values.size() == 1 && values.first().size() <= kText) {
            card_ = values.first();
            return true;
        }
        if (part.kind == Part::Address && values.size() == 1) {
            const QByteArray bytes = QByteArray::fromHex(values.first().toLatin1());
            if (bytes.size() != kAddress ||
                QLatin1String(bytes.toHex(':')) != values.first().toLower())
                return false;
            mac_ = bytes;
            return true;
        }
        if (part.count == 0 || values.size() != part.count)
            return false;
        std::array<int, 3> read{};
        for (int n = 0; n < part.count; ++n) {
            bool ok = false;
            const double value = values.at(n).toDouble(&ok) * part.scale;
            if (!ok || !(value >= 0 && value <= 0xFFFF))
                return false;
            read[static_cast<std::size_t>(n)] = qRound(value);
        }
        values_[i] = read;
        return true;
    }

    QString list() const {
        static const char* const kStates[] = {"ok", "fail", "silent"};
        QStringList faults;
        for (std::size_t i = 0; i < kCount; ++i) {
            if (states_[i] != State::Ok || values_[i] != kParts[i].good)
                faults.append(QLatin1String(kParts[i].name) + QLatin1Char(' ') +
                              (states_[i] != State::Ok
                                   ? QLatin1String(kStates[static_cast<int>(states_[i])])
                                   : QLatin1String("changed")));
        }
        return faults.isEmpty() ? QStringLiteral("all ok") : faults.join(QStringLiteral(", "));
    }

    static constexpr int kAddress = 6;
    static constexpr int kText = 16;  // bytes of a text
    static constexpr int kVersions = 4 * kText;

    std::array<State, kCount> states_{};
    std::array<std::array<int, 3>, kCount> values_{};
    QString card_;
    QByteArray mac_;
    QHash<quint16, std::size_t> running_;  // the part under test, by request
    QTimer live_;
    int beat_ = 0;
};

}  // namespace

std::unique_ptr<Subject> makeFactorySubject(Device& device) {
    return std::make_unique<FactorySubject>(device);
}
