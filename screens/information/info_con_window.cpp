#include "screens/information/info_con_window.h"

#include "app/cable_watch.h"
#include "app/peer_history.h"
#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/ipv4.h"
#include "cloud/network_helper.h"
#include "cloud/service_contact.h"
#include "link/command_code.h"
#include "link/device_message.h"

namespace {

using State = PeerCard::State;

/// Milliseconds between two looks at the network's address, of which nobody tells.
constexpr int kPeriod = 2000;

ScriptHandler::Script entry(const char* key) {
    return WindowForm::shell()->getScript(QLatin1String(key));
}

QString text(const char* key) {
    return entry(key).script;
}

/// "since ..." and the like with the time; empty without one.
QString timed(const char* key, const QDateTime& time) {
    if (!time.isValid())
        return {};
    return text(key).arg(time.toString(text("Arg_EventTime")));
}

QString failureText(const ServiceContact& contact) {
    using Failure = ServiceContact::Failure;
    switch (contact.failure()) {
        case Failure::Refused:
            return text("Info_ServiceRefused");
        case Failure::NoAnswer:
            return text("Info_ServiceSilent");
        case Failure::WrongAnswer:
            return text("Info_ServiceStrange");
        case Failure::Result:
            return text("Info_ServiceDeclined")
                .arg(contact.resultCode())
                .arg(contact.message().simplified())
                .trimmed();
        case Failure::None:
            break;
    }
    return {};
}

}  // namespace

info_conWindow::info_conWindow(QWidget* parent, const QString& title) : FormScreen(parent, title) {
    timer_.setInterval(kPeriod);
    connect(&timer_, &QTimer::timeout, this, &info_conWindow::showNetwork);
}

// --- Coming and going ----------------------------------------------------------------------

void info_conWindow::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->list->rewind();
    connect(&shell()->peerHistory(), &PeerHistory::changed, this, &info_conWindow::showPeers,
            Qt::UniqueConnection);
    connect(&shell()->serviceContact(), &ServiceContact::changed, this,
            &info_conWindow::showService, Qt::UniqueConnection);
    showPeers();
    // The answer is followed by how things stand with the access controller.
    shell()->SendCommand(command::AskUserCounts, 0, 0);
}

void info_conWindow::windowOutEvent() {
    FormScreen::windowOutEvent();
    disconnect(&shell()->peerHistory(), nullptr, this, nullptr);
    disconnect(&shell()->serviceContact(), nullptr, this, nullptr);
}

void info_conWindow::deviceAnswer(const DeviceMessage& message) {
    FormScreen::deviceAnswer(message);
    if (message.command != command::ConnectionInfo)
        return;
    if (const auto info = message.record<HostInfo>())
        UpdateHostInfo(*info);
}

void info_conWindow::peersChanged() {
    FormScreen::peersChanged();
    if (shell()->linkUp() && !shell()->peerHistory().host())
        shell()->SendCommand(command::AskUserCounts, 0, 0);
    showPeers();
}

void info_conWindow::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    showPeers();
}

void info_conWindow::scriptsApplied() {
    FormScreen::scriptsApplied();
    showPeers();
}

// --- What is shown -------------------------------------------------------------------------

void info_conWindow::showPeers() {
    showController();
    showService();
    showAccess();
    showNetwork();
}

void info_conWindow::showController() {
    const bool up = shell()->linkUp();
    ui_->controllerCard->setPeer(up ? State::Good : State::Bad,
                                 entry(up ? "Info_Reached" : "Info_NotReached"),
                                 {timed("Info_SinceTime", shell()->peerHistory().linkChanged())});
}

void info_conWindow::showService() {
    const ServiceContact& contact = shell()->serviceContact();
    const PeerHistory& history = shell()->peerHistory();
    if (!shell()->serviceInUse()) {
        ui_->serviceCard->setPeer(State::Off, entry("Info_PeerNotUsed"), {});
        return;
    }
    QStringList lines;
    const bool reached = shell()->serviceReached();
    if (reached) {
        lines += timed("Info_SinceTime", contact.connectedSince());
    } else {
        lines += failureText(contact);
        if (contact.failure() != ServiceContact::Failure::None)
            lines += contact.failedAt().toString(text("Arg_EventTime"));
        lines += timed("Info_LastReached", contact.lastReached());
    }
    lines += text("Info_ConfirmedToday").arg(history.confirmedToday());
    lines += text(history.eventsWait() && history.usersWait() ? "Info_BothWait"
                  : history.eventsWait()                      ? "Info_EventsWait"
                  : history.usersWait()                       ? "Info_UsersWait"
                                                              : "Info_NothingWaits");
    ui_->serviceCard->setPeer(reached ? State::Good : State::Bad,
                              entry(reached ? "Info_Reached" : "Info_NotReached"), lines);
}

void info_conWindow::showAccess() {
    if (const auto& host = shell()->peerHistory().host())
        UpdateHostInfo(*host);
    else
        ui_->accessCard->setPeer(State::Off, entry("Info_PeerUnknown"), {});
}

void info_conWindow::UpdateHostInfo(const HostInfo& info) {
    const bool reached = info.connected != 0;
    const QString place =
        Ipv4::dotted(info.address) + QLatin1Char(':') + QString::number(info.port);
    ui_->accessCard->setPeer(reached ? State::Good : State::Bad,
                             entry(reached ? "Info_Reached" : "Info_NotReached"),
                             {timed("Info_SinceTime", shell()->peerHistory().hostSince()),
                              fieldText(info.name).simplified(), place});
}

void info_conWindow::showNetwork() {
    timer_.start();
    CableWatch& cable = shell()->peerHistory().cable();
    cable.look();
    const QString interface = QLatin1String(NetworkHelper::kInterface);
    const QString address = NetworkHelper::getIPAddress(interface);
    const QString mask = NetworkHelper::getMask(interface);
    const bool plugged = cable.isPlugged();
    ui_->networkCard->setPeer(plugged ? State::Good : State::Bad,
                              entry(plugged ? "Info_CablePlugged" : "Info_CableMissing"),
                              {timed("Info_SinceTime", cable.since()),
                               address.isEmpty() ? text("Info_NoAddress")
                                                 : QStringLiteral("%1 / %2").arg(address, mask)});
}
