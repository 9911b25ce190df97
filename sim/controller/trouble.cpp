#include "sim/controller/trouble.h"

#include <QStringList>
#include <QTimer>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_records.h"
#include "sim/controller/device.h"
#include "sim/controller/terminal_link.h"

namespace {

/// The two parameters of an answer, where Kind is the request's first one and Option its second.
enum class Form { Result, ResultKind, KindResult, ResultOption, Option };

/// Requests that the controller may refuse, and how the answer says so.
constexpr struct Refusal {
    quint16 request;
    quint16 answer;
    Form form = Form::Result;
    quint8 result = command::answer::Failed;
    int length = 0;  // bytes of the record that the answer carries all the same
} kRefusals[] = {
    {command::StoreUser, command::UserStored},
    {command::StartEnrolment, command::EnrolmentRefused},
    {command::StartFaceCapture, command::FaceEnrolled, Form::Result, 4},
    {command::CheckUserId, command::UserIdChecked},
    {command::DeleteUser, command::UserDeleteResult},
    {command::DeleteUserGroup, command::UserGroupDeleted, Form::ResultKind},
    {command::UploadUsers, command::UsersUploaded, Form::Result, 2},
    {command::ChangeUser, command::UserChanged},
    {command::SaveFaceSettings, command::FaceSettingsSaved},
    {command::SaveScreenSettings, command::ScreenSettingsSaved},
    {command::SaveSoundSettings, command::SoundSettingsSaved},
    {command::Initialise, command::Initialised, Form::ResultKind},
    {command::UsbMount, command::UsbState, Form::Result, command::stick::Gone},
    {command::UsbImport, command::UsbImported, Form::KindResult, command::transfer::InvalidData},
    {command::UsbExport, command::UsbExported, Form::KindResult, command::transfer::NotExported},
    {command::UsbImportFile, command::FirmwareProgress, Form::Result,
     command::transfer::UpgradeFailed},
    {command::SearchUser, command::UserFound, Form::ResultKind, command::answer::Failed,
     sizeof(_gui_user_)},
    {command::SaveDeviceSetup, command::DeviceSetupSaved},
    {command::SaveRegistrationMode, command::RegistrationModeSaved},
    {command::SaveOperationTimes, command::OperationSettingsSaved},
    {command::SaveNetwork, command::NetworkSaved},
    {command::SaveDdns, command::DdnsSaved},
    {command::TestLink, command::LinkTested, Form::ResultKind},
    {command::UpdateFirmware, command::FirmwareUpdateAnswer},
    {command::TextEntered, command::NumberChecked},
    {command::FactoryLedTest, command::FactoryLedReport, Form::ResultOption},
    {command::FactoryIoTest, command::FactoryIoStepDone, Form::Option},
    {command::FactoryRs422Test, command::FactoryRs422Report},
    {command::FactoryCameraTest, command::FactoryCameraReport, Form::ResultOption},
    {command::FactoryCardTest, command::FactoryCardReport, Form::Result, command::answer::Failed,
     16},
    {command::FactoryCardAntennaTest, command::FactoryCardAntennaReport},
    {command::FactoryClockTest, command::FactoryClockReport, Form::Result, command::answer::Failed,
     sizeof(ClockTime)},
    {command::FactoryMacTest, command::FactoryMacReport, Form::Result, command::answer::Failed, 6},
    {command::FactoryMemoryTest, command::FactoryMemoryReport},
    {command::FactoryPingTest, command::FactoryPingReport},
};

const Refusal* refusalOf(quint16 request) {
    for (const Refusal& refusal : kRefusals) {
        if (refusal.request == request)
            return &refusal;
    }
    return nullptr;
}

/// The end of a factory test has no answer, so that only its start can be refused.
bool isStop(const Request& request) {
    return request.code > command::FactoryMode && request.code < command::FactoryRestart &&
           request.p1 == command::factory::Stop;
}

bool isRequest(quint16 code) {
    return qstrcmp(command::name(code, command::Direction::ToController), "unknown") != 0;
}

}  // namespace

Trouble::Trouble(Device& device) : Subject(device), late_(std::make_unique<QObject>()) {
    onWord("refuse", "CODE [RESULT]: refuse the terminal's next request CODE",
           [this](const QString& text) { return add(Kind::Refuse, text); });
    onWord("silent", "CODE: take no notice of the next request CODE",
           [this](const QString& text) { return add(Kind::Silence, text); });
    onWord("delay", "CODE MS: carry the next request CODE out so much later",
           [this](const QString& text) { return add(Kind::Delay, text); });
    onWord("lose-link-at", "CODE: drop the link when the next request CODE arrives, untouched",
           [this](const QString& text) { return add(Kind::LoseLink, text); });
    onWord("normal", "forget what the four words above have left in store", [this](const QString&) {
        waiting_.clear();
        return done();
    });
    // What is ready after the terminal has gone finds nobody to be told.
    QObject::connect(&device_.link(), &TerminalLink::disconnected, &context_,
                     [this] { late_ = std::make_unique<QObject>(); });
}

void Trouble::meet(const Request& request, const RequestHandler& carryOut) {
    const auto waiting = waiting_.find(request.code);
    if (waiting == waiting_.end() || (isStop(request) && waiting->head().kind != Kind::LoseLink)) {
        carryOut(request);
        return;
    }
    const Event event = waiting->dequeue();
    if (waiting->isEmpty())
        waiting_.erase(waiting);
    switch (event.kind) {
        case Kind::Refuse:
            refuse(request, static_cast<quint8>(event.value));
            break;
        case Kind::Silence:
            break;
        case Kind::Delay:
            QTimer::singleShot(event.value, late_.get(),
                               [carryOut, request] { carryOut(request); });
            break;
        case Kind::LoseLink:
            device_.link().drop();
            break;
    }
}

QString Trouble::add(Kind kind, const QString& text) {
    constexpr int kMostWaiting = 1000;
    constexpr int kLongest = 24 * 3600 * 1000;
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    bool codeOk = false;
    const quint16 code = parts.value(0).toUShort(&codeOk);
    if (!codeOk || !isRequest(code))
        return failed(QStringLiteral("no such request of the terminal"));
    bool valueOk = true;
    int value = parts.size() > 1 ? parts[1].toInt(&valueOk) : 0;
    const bool takesValue = kind == Kind::Refuse || kind == Kind::Delay;
    const int most = kind == Kind::Refuse ? 255 : kLongest;
    if (!valueOk || value < 0 || value > most || parts.size() > (takesValue ? 2 : 1) ||
        (kind == Kind::Delay && parts.size() != 2))
        return failed(
            QStringLiteral("expected CODE, or with a number behind it where 'help' says so"));
    if (kind == Kind::Refuse) {
        const Refusal* refusal = refusalOf(code);
        if (refusal == nullptr)
            return failed(QStringLiteral("the answer to that request has no result"));
        if (parts.size() == 1)
            value = refusal->result;
    }
    QQueue<Event>& waiting = waiting_[code];
    if (waiting.size() >= kMostWaiting)
        return failed(QStringLiteral("enough of them wait already"));
    waiting.enqueue({kind, value});
    return done(QLatin1String(command::name(code, command::Direction::ToController)));
}

void Trouble::refuse(const Request& request, quint8 result) {
    const Refusal& refusal = *refusalOf(request.code);
    const QByteArray payload(refusal.length, '\0');
    switch (refusal.form) {
        case Form::Result:
            device_.send(refusal.answer, result, 0, payload);
            break;
        case Form::ResultKind:
            device_.send(refusal.answer, result, request.p1, payload);
            break;
        case Form::KindResult:
            device_.send(refusal.answer, request.p1, result, payload);
            break;
        case Form::ResultOption:
            device_.send(refusal.answer, result, request.p2, payload);
            break;
        case Form::Option:
            device_.send(refusal.answer, request.p2, 0, payload);
            break;
    }
}
