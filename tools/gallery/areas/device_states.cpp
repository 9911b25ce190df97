#include <QScrollBar>

#include "app/window_shell.h"
#include "cloud/service_contact.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "screens/common/settings_form.h"
#include "tools/gallery/area_states.h"
#include "tools/gallery/stage.h"
#include "ui/scroll_list.h"

namespace {

using command::answer::Done;
using command::answer::Failed;

/// Touches buttons, rows and keys by their names, with a blank between two.
void touch(Stage& stage, const char* names) {
    const QStringList all = QString::fromLatin1(names).split(QLatin1Char(' '));
    for (const QString& name : all)
        stage.touch(name);
}

void scroll(Stage& stage, double part) {
    QScrollBar* bar = stage.active<QWidget>()->findChild<ScrollList*>()->verticalScrollBar();
    bar->setValue(static_cast<int>(bar->maximum() * part));
}

/// The settings with something else in them.
template <class Change>
void with(Stage& stage, Change change) {
    _gui_menu_ settings = stage.settings();
    change(settings);
    stage.changeSettings(settings);
}

/// A save, and what the controller says to it.
template <unsigned short code>
void refused(Stage& stage) {
    touch(stage, "forwardButton");
    stage.receive(code, Failed);
}
template <unsigned short code>
void saved(Stage& stage) {
    touch(stage, "forwardButton");
    stage.receive(code, Done);
}
void saving(Stage& stage) {
    touch(stage, "forwardButton");
}
void noAnswer(Stage& stage) {
    stage.active<SettingsForm>()->ShowPopup(SettingsForm::NoAnswer, 0);
}
void noLink(Stage& stage) {
    stage.loseController();
    touch(stage, "forwardButton");
}

void uncommissioned(Stage& stage) {
    with(stage, [](_gui_menu_& settings) {
        settings.commissioned = 0;
        settings.setup.adminPassword[0] = '\0';
    });
}

/// The clock is set here, and its fields are open.
void clockOpen(Stage& stage) {
    with(stage, [](_gui_menu_& settings) { settings.setup.syncTime = 0; });
    touch(stage, "clockRow");
}

/// Whatever the row leads to is asked for and agreed to.
void reset(Stage& stage, const char* row, unsigned char what, unsigned char result) {
    touch(stage, row);
    touch(stage, "dialogOkButton");
    stage.receive(command::Initialised, result, what);
}

void longest(_gui_menu_& settings) {
    for (auto* address :
         {settings.network.own.address, settings.network.own.mask, settings.network.own.gateway,
          settings.network.own.dns, settings.network.own.managerAddress}) {
        for (int i = 0; i < 4; ++i)
            address[i] = 255;
    }
    settings.network.own.managerPort = 65535;
    settings.network.connectPeriod = settings.network.checkPeriod = 255;
    settings.setup.deviceNumber = 0xFFFFFFFF;
    settings.setup.authMethod = 4;
    settings.setup.doorOpenDuration = 60;
    settings.ddns.port = 65535;
    settings.screen.standbyMode = 1;
    settings.screen.standbyPicture = 254;
    settings.screen.brightness = 10;
    settings.sound.volume = 10;
    settings.sound.alarmSound = 4;
    settings.face.securityLevel = 5;
    settings.users.all = 9999;
    for (char& letter : settings.ddns.host)
        letter = 'W';
}

void longestValues(Stage& stage) {
    with(stage, &longest);
}

/// The management service is in use, and was found to be so.
template <ServiceContact::Failure failure, int code = 0>
void serviceFailed(Stage& stage) {
    with(stage, [](_gui_menu_& settings) { settings.network.useManager = 1; });
    const_cast<ServiceContact&>(WindowForm::shell()->serviceContact())
        .failed(failure, code,
                code != 0 ? QStringLiteral("manager <b>control</b> is not allowed for readers of "
                                           "this building & its annex")
                          : QString());
    scroll(stage, 1);
}

void serviceReached(Stage& stage) {
    with(stage, [](_gui_menu_& settings) { settings.network.useManager = 1; });
    const_cast<ServiceContact&>(WindowForm::shell()->serviceContact()).reached();
    scroll(stage, 1);
}

constexpr AreaState kStates[] = {
    {"setupMenuWindow", "access", [](Stage& stage) { scroll(stage, 0.3); }},
    {"setupMenuWindow", "door", [](Stage& stage) { scroll(stage, 0.7); }},
    {"setupMenuWindow", "end", [](Stage& stage) { scroll(stage, 1); }},
    {"setupMenuWindow", "longest", longestValues},
    {"setupMenuWindow", "language-list", [](Stage& stage) { touch(stage, "languageCombo"); }},
    {"setupMenuWindow", "operation-list", [](Stage& stage) { touch(stage, "operationCombo"); }},
    {"setupMenuWindow", "authentication-list",
     [](Stage& stage) { touch(stage, "authMethodCombo"); }},
    {"setupMenuWindow", "alarm-list", [](Stage& stage) { touch(stage, "alarmCombo"); }},
    {"setupMenuWindow", "number-fault",
     [](Stage& stage) { touch(stage, "deviceNumberField key_clear forwardButton"); }},
    {"setupMenuWindow", "clock", clockOpen},
    {"setupMenuWindow", "clock-keypad",
     [](Stage& stage) {
         clockOpen(stage);
         touch(stage, "timeField key_1");
     }},
    {"setupMenuWindow", "clock-fault",
     [](Stage& stage) {
         clockOpen(stage);
         touch(stage, "timeField key_2 key_5 key_0 key_0 setTimeButton dialogOkButton");
     }},
    {"setupMenuWindow", "clock-wait",
     [](Stage& stage) {
         clockOpen(stage);
         touch(stage, "setTimeButton");
     }},
    {"setupMenuWindow", "clock-set",
     [](Stage& stage) {
         clockOpen(stage);
         touch(stage, "setTimeButton");
         stage.receive(command::TimeNotice, 0);
     }},
    {"setupMenuWindow", "password-keypad",
     [](Stage& stage) { touch(stage, "passwordField key_1 key_2 key_3"); }},
    {"setupMenuWindow", "password-short",
     [](Stage& stage) { touch(stage, "passwordField key_1 key_2 key_3 forwardButton"); }},
    {"setupMenuWindow", "passwords-differ",
     [](Stage& stage) {
         touch(stage, "passwordField key_1 key_2 key_3 key_4 repeatField key_1 forwardButton");
     }},
    {"setupMenuWindow", "passwords-differ-rows",
     [](Stage& stage) {
         touch(stage,
               "passwordField key_1 key_2 key_3 key_4 repeatField key_1 forwardButton "
               "dialogOkButton");
     }},
    {"setupMenuWindow", "remove-password", [](Stage& stage) { touch(stage, "removePasswordRow"); }},
    {"setupMenuWindow", "removes-password",
     [](Stage& stage) { touch(stage, "removePasswordRow dialogOkButton"); }},
    {"setupMenuWindow", "new", uncommissioned},
    {"setupMenuWindow", "new-end",
     [](Stage& stage) {
         uncommissioned(stage);
         scroll(stage, 1);
     }},
    {"setupMenuWindow", "new-password-needed",
     [](Stage& stage) {
         uncommissioned(stage);
         touch(stage, "forwardButton");
     }},
    {"setupMenuWindow", "saving", saving},
    {"setupMenuWindow", "saved", saved<command::DeviceSetupSaved>},
    {"setupMenuWindow", "refused", refused<command::DeviceSetupSaved>},
    {"setupMenuWindow", "no-answer", noAnswer},
    {"setupMenuWindow", "no-link", noLink},

    {"setupDefaultWindow", "logs", [](Stage& stage) { touch(stage, "logsRow"); }},
    {"setupDefaultWindow", "settings", [](Stage& stage) { touch(stage, "settingsRow"); }},
    {"setupDefaultWindow", "everything",
     [](Stage& stage) {
         longestValues(stage);
         touch(stage, "everythingRow");
     }},
    {"setupDefaultWindow", "restart", [](Stage& stage) { touch(stage, "restartRow"); }},
    {"setupDefaultWindow", "resetting",
     [](Stage& stage) { touch(stage, "settingsRow dialogOkButton"); }},
    {"setupDefaultWindow", "restarting",
     [](Stage& stage) { touch(stage, "restartRow dialogOkButton"); }},
    {"setupDefaultWindow", "done",
     [](Stage& stage) { reset(stage, "settingsRow", command::initialise::Settings, Done); }},
    {"setupDefaultWindow", "logs-deleted",
     [](Stage& stage) { reset(stage, "logsRow", command::initialise::Logs, Done); }},
    {"setupDefaultWindow", "not-reset",
     [](Stage& stage) { reset(stage, "logsRow", command::initialise::Logs, Failed); }},
    {"setupDefaultWindow", "no-link",
     [](Stage& stage) {
         stage.loseController();
         touch(stage, "logsRow dialogOkButton");
     }},

    {"enviFaceWindow", "strictest", longestValues},
    {"enviFaceWindow", "pressed",
     [](Stage& stage) { stage.press(QStringLiteral("securityLevel")); }},
    {"enviFaceWindow", "saving", saving},
    {"enviFaceWindow", "saved", saved<command::FaceSettingsSaved>},
    {"enviFaceWindow", "refused", refused<command::FaceSettingsSaved>},
    {"enviFaceWindow", "no-link", noLink},

    {"enviScreenWindow", "brightest", longestValues},
    {"enviScreenWindow", "darkest",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.screen.brightness = 1; });
     }},
    {"enviScreenWindow", "screen-off-list", [](Stage& stage) { touch(stage, "screenOffCombo"); }},
    {"enviScreenWindow", "menu-time-list", [](Stage& stage) { touch(stage, "menuTimeoutCombo"); }},
    {"enviScreenWindow", "saving", saving},
    {"enviScreenWindow", "saved", saved<command::ScreenSettingsSaved>},
    {"enviScreenWindow", "refused", refused<command::ScreenSettingsSaved>},
    {"enviScreenWindow", "no-link", noLink},
    {"enviScreen_StayWindow", "picture", [](Stage& stage) { touch(stage, "pictureRow"); }},

    {"enviSoundWindow", "loudest", longestValues},
    {"enviSoundWindow", "silent",
     [](Stage& stage) { with(stage, [](_gui_menu_& settings) { settings.sound.volume = 0; }); }},
    {"enviSoundWindow", "saving", saving},
    {"enviSoundWindow", "saved", saved<command::SoundSettingsSaved>},
    {"enviSoundWindow", "refused", refused<command::SoundSettingsSaved>},
    {"enviSoundWindow", "no-link", noLink},
    {"enviSound_Alarm", "other", [](Stage& stage) { touch(stage, "chimeRow"); }},
    {"enviSound_RecogFail", "other", [](Stage& stage) { touch(stage, "beepsRow"); }},

    {"networkMenuWindow", "testing", [](Stage& stage) { touch(stage, "testServerRow"); }},
    {"networkMenuWindow", "reached",
     [](Stage& stage) {
         touch(stage, "testServerRow");
         stage.receive(command::LinkTested, Done, command::link_test::Server);
     }},
    {"networkMenuWindow", "not-reached",
     [](Stage& stage) {
         touch(stage, "testDdnsRow");
         stage.receive(command::LinkTested, Failed, command::link_test::Ddns);
     }},
    {"networkMenuWindow", "no-link",
     [](Stage& stage) {
         stage.loseController();
         touch(stage, "testServerRow");
     }},

    {"tcpIpWindow", "keypad",
     [](Stage& stage) { touch(stage, "addressField key_clear key_1 key_9 key_2 key_."); }},
    {"tcpIpWindow", "longest", longestValues},
    {"tcpIpWindow", "dhcp",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.network.own.dhcp = 1; });
     }},
    {"tcpIpWindow", "address-fault",
     [](Stage& stage) { touch(stage, "addressField key_clear forwardButton"); }},
    {"tcpIpWindow", "zero-ones",
     [](Stage& stage) {
         longestValues(stage);
         touch(stage, "forwardButton");
     }},
    {"tcpIpWindow", "reserved",
     [](Stage& stage) {
         touch(stage, "addressField key_backspace key_backspace key_backspace key_0 forwardButton");
     }},
    {"tcpIpWindow", "mask-fault",
     [](Stage& stage) { touch(stage, "maskField key_backspace key_1 forwardButton"); }},
    {"tcpIpWindow", "gateway-outside",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.network.own.gateway[0] = 10; });
         touch(stage, "forwardButton");
     }},
    {"tcpIpWindow", "gateway-outside-row",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.network.own.gateway[0] = 10; });
         touch(stage, "forwardButton dialogOkButton");
     }},
    {"tcpIpWindow", "dns-fault",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.network.own.dns[0] = 255; });
         touch(stage, "forwardButton");
     }},
    {"tcpIpWindow", "question",
     [](Stage& stage) { touch(stage, "dnsField key_clear forwardButton"); }},
    {"tcpIpWindow", "saving",
     [](Stage& stage) { touch(stage, "dnsField key_clear forwardButton dialogOkButton"); }},
    {"tcpIpWindow", "saved", saved<command::NetworkSaved>},
    {"tcpIpWindow", "refused", refused<command::NetworkSaved>},
    {"tcpIpWindow", "no-link", noLink},

    {"ddnsWindow", "longest", longestValues},
    {"ddnsWindow", "keypad", [](Stage& stage) { touch(stage, "hostField"); }},
    {"ddnsWindow", "host-fault",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.ddns.use = 1; });
         touch(stage, "forwardButton");
     }},
    {"ddnsWindow", "port-fault",
     [](Stage& stage) { touch(stage, "portField key_clear key_0 forwardButton"); }},
    {"ddnsWindow", "saving", saving},
    {"ddnsWindow", "saved", saved<command::DdnsSaved>},
    {"ddnsWindow", "refused", refused<command::DdnsSaved>},
    {"ddnsWindow", "no-link", noLink},

    {"cloudWindow", "longest", longestValues},
    {"cloudWindow", "address-fault",
     [](Stage& stage) {
         with(stage, [](_gui_menu_& settings) { settings.network.useManager = 1; });
         touch(stage, "addressField key_clear forwardButton");
     }},
    {"cloudWindow", "period-fault",
     [](Stage& stage) { touch(stage, "checkPeriodField key_clear key_4 forwardButton"); }},
    {"cloudWindow", "reached", serviceReached},
    {"cloudWindow", "service-refuses", serviceFailed<ServiceContact::Failure::Refused>},
    {"cloudWindow", "service-silent", serviceFailed<ServiceContact::Failure::NoAnswer>},
    {"cloudWindow", "wrong-answer", serviceFailed<ServiceContact::Failure::WrongAnswer>},
    {"cloudWindow", "result-code", serviceFailed<ServiceContact::Failure::Result, 2000>},
    {"cloudWindow", "saving", saving},
    {"cloudWindow", "saved", saved<command::NetworkSaved>},
    {"cloudWindow", "refused", refused<command::NetworkSaved>},
    {"cloudWindow", "no-link", noLink},
};

}  // namespace

AreaStates deviceStates() {
    return kStates;
}
