#include "screens/settings/cloud_window.h"

#include "app/window_shell.h"
#include "base/ipv4.h"
#include "cloud/service_contact.h"
#include "link/command_code.h"
#include "ui/input_field.h"
#include "ui/styler.h"
#include "ui/theme.h"
#include "ui/toggle.h"

namespace {

enum Popup { kBadAddress = 1, kBadPort, kBadPeriod };
constexpr ScreenText kTexts[] = {
    {kBadAddress, "Error_ServiceAddress", ScreenText::Error},
    {kBadPort, "Error_Port", ScreenText::Error},
    {kBadPeriod, "Error_Period", ScreenText::Error},
};

/// By ServiceContact::State and by ServiceContact::Failure.
constexpr const char* kStates[] = {"ListItem_NotTried", "ListItem_Trying", "ListItem_Reached", ""};
constexpr const char* kFailures[] = {"ListItem_NotReached", "ListItem_Refused", "ListItem_NoAnswer",
                                     "ListItem_WrongAnswer", "Arg_ResultCode"};

constexpr int kMostOfMessage = 120;  // characters

}  // namespace

void Cloud_Window::built() {
    popup().add(kTexts);
    slice(&_gui_menu_::network, command::SaveNetwork, command::NetworkSaved, command::save::Cloud);
    constexpr Range kPeriod{5, 255};
    bind(ui_->useToggle, &NetworkBlock::useManager, kInverted);
    bind(ui_->addressField, &AddressBlock::managerAddress, kAddressOrNone, kBadAddress);
    bind(ui_->portField, &AddressBlock::managerPort, Range{1, 65535}, kBadPort);
    bind(ui_->connectPeriodField, &NetworkBlock::connectPeriod, kPeriod, kBadPeriod);
    bind(ui_->checkPeriodField, &NetworkBlock::checkPeriod, kPeriod, kBadPeriod);
    QPalette palette = ui_->messageLabel->palette();
    palette.setColor(QPalette::WindowText, Theme::color(Theme::kHint));
    ui_->messageLabel->setPalette(palette);
}

void Cloud_Window::windowInEvent() {
    FormScreen::windowInEvent();
    following_ = connect(&shell()->serviceContact(), &ServiceContact::changed, this,
                         &Cloud_Window::showContact);
}

void Cloud_Window::windowOutEvent() {
    FormScreen::windowOutEvent();
    disconnect(following_);
}

bool Cloud_Window::validate(_gui_menu_& edited) {
    const NetworkBlock& network = edited.network;
    const bool isWrong = network.useManager != 0 && !Ipv4::isMachine(network.own.managerAddress[0]);
    if (isWrong)
        fault(kBadAddress, {ui_->addressField});
    return !isWrong;
}

void Cloud_Window::saved() {
    if (shell()->serviceInUse())
        shell()->connectService();
}

void Cloud_Window::valuesShown() {
    ui_->managerControlRow->setValue(word(
        shell()->menuRecord().managerControl != 0 ? "ListItem_Allowed" : "ListItem_NotAllowed"));
    showContact();
}

void Cloud_Window::showContact() {
    const ServiceContact& contact = shell()->serviceContact();
    const bool used = shell()->serviceInUse();
    const bool failed = used && contact.state() == ServiceContact::State::Failed;
    QString state = word(kStates[static_cast<int>(contact.state())]);
    if (!used)
        state = word("ListItem_ServiceOff");
    else if (failed)
        state = word(kFailures[static_cast<int>(contact.failure())])
                    .replace(QLatin1String("%1"), QString::number(contact.resultCode()));
    ui_->stateRow->setValue(state);
    ui_->stateRow->setPositive(used && contact.state() == ServiceContact::State::Reached);

    // The service's own words: whatever they are, they are shown as they stand.
    const bool speaks = failed && !contact.message().isEmpty();
    if (speaks) {
        ScriptHandler::Script message = shell()->getScript(QStringLiteral("Arg_ServiceMessage"));
        message.script =
            message.script.arg(contact.message().simplified().left(kMostOfMessage).toHtmlEscaped());
        Styler::setText(ui_->messageLabel, message);
    }
    ui_->messageLabel->setVisible(speaks);

    const auto show = [this](ListRow* row, const QDateTime& time) {
        row->setValue(time.isValid() ? time.toString(word("Arg_EventTime"))
                                     : word("ListItem_NotYet"));
    };
    ui_->sinceRow->setVisible(used && contact.connectedSince().isValid());
    show(ui_->sinceRow, contact.connectedSince());
    show(ui_->lastReachedRow, contact.lastReached());
}

QString Cloud_Window::word(const char* key) const {
    return shell()->getScript(QLatin1String(key)).script;
}
