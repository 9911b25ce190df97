#include "app/shell_messages.h"

#include <QLoggingCategory>

#include "app/record_store.h"
#include "app/settings_entrance.h"
#include "app/system_status.h"
#include "cloud/event_reports.h"
#include "cloud/parameters.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_link.h"

Q_LOGGING_CATEGORY(messageLog, "zel.app.messages", QtInfoMsg)

namespace {

/// How much of a controller's note is written to the log, in characters.
constexpr int kMostOfNote = 200;

/// The payload as one line of a log, whatever it holds: cut, and with everything that is no letter
/// or sign as its number.
QString logText(const DeviceMessage& message) {
    const QString text = QString::fromUtf8(message.payload, message.length);
    QString line;
    for (const QChar character : text.left(kMostOfNote)) {
        if (character.isPrint() && character != QLatin1Char('\\'))
            line += character;
        else
            line += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
    return text.size() > kMostOfNote ? line + QStringLiteral("...") : line;
}

}  // namespace

ShellMessages::ShellMessages(DeviceLink& link, RecordStore& records, SettingsEntrance& settings,
                             SystemStatus& status, QObject* parent)
    : QObject(parent),
      link_(link),
      records_(records),
      settings_(settings),
      status_(status),
      orders_(link) {}

void ShellMessages::overhear(const DeviceMessage& message) {
    const auto counts = message.record<UserCounts>();
    if (message.command != command::UserCountsAnswer || !counts || !settings_.arrived())
        return;
    _gui_menu_ menu = records_.menu();
    menu.users = *counts;
    settings_.store(menu);
}

void ShellMessages::take(const DeviceMessage& message) {
    switch (message.command) {
        case command::Quit:
            link_.send(command::QuitAcknowledged, 0, 0);
            emit quitOrdered();
            break;
        case command::SystemStatus:
            emit statusReported(message.p1);
            if (const auto report = message.record<StatusReport>())
                records_.setMealCount(report->meals);
            else if (message.length > 0)
                qCWarning(messageLog, "status report without counts: %d bytes where %zu are needed",
                          message.length, sizeof(StatusReport));
            break;
        case command::Settings:
        case command::SettingsChanged:
            if (const auto record = message.record<_gui_menu_>())
                settings_.receive(*record);
            break;
        case command::ControllerEvent:
            lastControllerEvent_ = {message.command, message.p1, message.p2, 0, nullptr};
            break;
        case command::SelfCheck:
            if (const auto word = message.record<std::uint32_t>())
                status_.setSelfCheck(*word);
            break;
        case command::UnsentDataWaiting:
        case command::UnsentDataReady:
            orders_.askForUnsentData();
            break;
        case command::FullLogsDeleted:
            // What is left in the store has new numbers; the service is to see it once more.
            link_.send(command::AskUnsentLogs, 0, 0);
            break;
        case command::TextSpoken:
            orders_.speak(0, nullptr);
            break;
        case command::AccessEvent:
            if (const auto event = message.record<GUI_LOGDATA>()) {
                emit accessReported(*event);
                if (message.p1 == command::event::New)
                    emit accessRecorded(event->eventStatus != 0);
            }
            break;
        case command::UserEnrolled:
            if (const auto info = message.record<info_s>())
                emit userEnrolled(*info);
            break;
        case command::VisitorCall:
            if (const auto call = message.record<VisitorCallReport>())
                emit visitorCalled(
                    QVariant::fromValue(event_reports::visitor(fieldText(call->visiblePicture))));
            break;
        case command::ControllerNote:
            qCInfo(messageLog, "controller note %d %d: %s", message.p1, message.p2,
                   qUtf8Printable(logText(message)));
            break;
        default:
            emit popupWanted(message.command, message.p1);
            break;
    }
}
