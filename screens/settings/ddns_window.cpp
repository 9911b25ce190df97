#include "screens/settings/ddns_window.h"

#include <algorithm>

#include "link/command_code.h"
#include "ui/input_field.h"
#include "ui/toggle.h"

namespace {

enum Popup { kBadHost = 1, kBadPort };
constexpr ScreenText kTexts[] = {
    {kBadHost, "Error_Host", ScreenText::Error},
    {kBadPort, "Error_Port", ScreenText::Error},
};

bool isHost(const QString& host) {
    return std::all_of(host.begin(), host.end(), [](QChar one) {
        return one == QLatin1Char('.') || one == QLatin1Char('-') || one.isLetterOrNumber();
    });
}

}  // namespace

void ddns_window::built() {
    popup().add(kTexts);
    slice(&_gui_menu_::ddns, command::SaveDdns, command::DdnsSaved);
    bind(ui_->useToggle, &DdnsBlock::use, kInverted);
    bind(ui_->hostField, &DdnsBlock::host, kBadHost, &isHost);
    bind(ui_->portField, &DdnsBlock::port, Range{1, 65535}, kBadPort);
}

bool ddns_window::validate(_gui_menu_& edited) {
    const bool isMissing = edited.ddns.use != 0 && ui_->hostField->text().isEmpty();
    if (isMissing)
        fault(kBadHost, {ui_->hostField});
    return !isMissing;
}
