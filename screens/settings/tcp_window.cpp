#include "screens/settings/tcp_window.h"

#include <algorithm>
#include <cstring>

#include "app/network_setup.h"
#include "app/window_shell.h"
#include "cloud/network_helper.h"
#include "link/command_code.h"
#include "ui/input_field.h"
#include "ui/toggle.h"

namespace {

using Fault = NetworkSetup::Fault;

/// Popups by fault, and the question.
constexpr int numberOf(Fault fault) {
    return static_cast<int>(fault);
}
constexpr int kAskAddress = 100;

constexpr auto Error = ScreenText::Error;

constexpr ScreenText kTexts[] = {
    {numberOf(Fault::Address), "Error_IpAddress", Error},
    {numberOf(Fault::AddressZeroOnes), "Error_IpZeroOnes", Error},
    {numberOf(Fault::AddressReserved), "Error_IpReserved", Error},
    {numberOf(Fault::Mask), "Error_Mask", Error},
    {numberOf(Fault::Gateway), "Error_Gateway", Error},
    {numberOf(Fault::GatewayOutside), "Error_GatewayOutside", Error},
    {numberOf(Fault::Dns), "Error_Dns", Error},
    {kAskAddress, "ListItem_AskAddress", ScreenText::Question},
};

const QString kInterface = QLatin1String(NetworkHelper::kInterface);

}  // namespace

void TCP_Window::windowOutEvent() {
    // An address that nobody has confirmed is not set: the terminal might not be found any more.
    request().cancel();
    FormScreen::windowOutEvent();
}

void TCP_Window::built() {
    popup().add(kTexts);
    slice(&_gui_menu_::network, command::SaveNetwork, command::NetworkSaved, command::save::TcpIp);
    bind(ui_->dhcpToggle, &AddressBlock::dhcp);
    bindField(
        ui_->addressField, &AddressBlock::address,
        [] { return NetworkHelper::getIPAddress(kInterface); }, kAddress, numberOf(Fault::Address));
    bindField(
        ui_->maskField, &AddressBlock::mask, [] { return NetworkHelper::getMask(kInterface); },
        kAddress, numberOf(Fault::Mask));
    bindField(
        ui_->gatewayField, &AddressBlock::gateway,
        [] { return NetworkHelper::getGateway(kInterface); }, kAddressOrNone,
        numberOf(Fault::Gateway));
    bindField(ui_->dnsField, &AddressBlock::dns, &NetworkHelper::getNameServer, kAddressOrNone,
              numberOf(Fault::Dns));
    connect(ui_->dhcpToggle, &Toggle::currentIndexChanged, this, [this] {
        for (InputField* input :
             {ui_->addressField, ui_->maskField, ui_->gatewayField, ui_->dnsField})
            reload(input);
        valuesShown();
    });
}

void TCP_Window::bindField(InputField* input, std::uint8_t (AddressBlock::*field)[4],
                           QString (*inForce)(), AddressRule rule, int fault) {
    bindInput(
        input,
        [=](const _gui_menu_& record) {
            input->setText(isByDhcp() ? inForce() : addressText(record.network.own.*field));
        },
        [=](_gui_menu_& record) {
            // What is kept for the day when it is a fixed address again is not looked at.
            const bool isRead = isByDhcp() || readAddress(*input, rule, record.network.own.*field);
            return isRead ? 0 : fault;
        });
}

bool TCP_Window::isByDhcp() const {
    return ui_->dhcpToggle->currentIndex() == 1;
}

void TCP_Window::valuesShown() {
    for (InputField* input : {ui_->addressField, ui_->maskField, ui_->gatewayField, ui_->dnsField})
        input->setEnabled(!isByDhcp());
}

bool TCP_Window::validate(_gui_menu_& edited) {
    const Fault found = NetworkSetup::check(edited.network.own);
    switch (found) {
        case Fault::None:
            return true;
        case Fault::Address:
        case Fault::AddressZeroOnes:
        case Fault::AddressReserved:
            fault(numberOf(found), {ui_->addressField});
            return false;
        case Fault::Mask:
            fault(numberOf(found), {ui_->maskField});
            return false;
        case Fault::Gateway:
        case Fault::GatewayOutside:
            fault(numberOf(found), {ui_->gatewayField});
            return false;
        case Fault::Dns:
            fault(numberOf(found), {ui_->dnsField});
            return false;
    }
    return true;
}

int TCP_Window::questionBefore(const _gui_menu_& edited) {
    const AddressBlock now = shell()->menuRecord().network.own;
    return std::memcmp(&edited.network.own, &now, sizeof now) != 0 ? kAskAddress : 0;
}

void TCP_Window::holdBack(_gui_menu_& stored, const _gui_menu_& former) {
    stored.network.own = former.network.own;
}

void TCP_Window::confirmed(_gui_menu_& record) {
    shell()->setIp(record.network.own);
}
