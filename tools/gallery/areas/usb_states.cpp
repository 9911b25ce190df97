#include "tools/gallery/area_states.h"

#include "link/command_code.h"
#include "tools/gallery/stage.h"

namespace {

/// The USB menu with a stick.
void withStick(Stage& stage) {
    constexpr unsigned char kMounted = 0;
    stage.receive(command::UsbState, kMounted, 1);
}

/// What the USB menu shows of something that goes on, or of its result.
template <unsigned short code, unsigned char p1, unsigned char p2>
void usbReport(Stage& stage) {
    withStick(stage);
    stage.receive(code, p1, p2);
}

constexpr AreaState kStates[] = {
    {"usbMenuWindow", "stick", withStick},
    {"usbMenuWindow", "pressed",
     [](Stage& stage) {
         withStick(stage);
         stage.press(QStringLiteral("exportUserTile"));
     }},
    {"usbMenuWindow", "mounting", usbReport<command::UsbState, 10, 0>},
    {"usbMenuWindow", "no-folder", usbReport<command::UsbState, 0, 0>},
    {"usbMenuWindow", "export-begins", usbReport<command::UsbExported, 2, 10>},
    {"usbMenuWindow", "copying", usbReport<command::UsbProgress, 1, 64>},
    {"usbMenuWindow", "sending", usbReport<command::UsbSending, 1, 64>},
    {"usbMenuWindow", "done", usbReport<command::UsbExported, 1, 0>},
    {"usbMenuWindow", "not-exported", usbReport<command::UsbExported, 1, 2>},
    {"usbMenuWindow", "stick-gone", usbReport<command::UsbImported, 2, 1>},
    {"usbMenuWindow", "users-exceeded", usbReport<command::UsbImported, 2, 2>},
    {"usbMenuWindow", "administrators-exceeded", usbReport<command::UsbImported, 2, 4>},
    {"usbMenuWindow", "invalid-data", usbReport<command::UsbImported, 3, 5>},
    {"usbMenuWindow", "no-valid-file", usbReport<command::UsbImported, 5, 6>},
    {"usbMenuWindow", "stick-pulled",
     [](Stage& stage) {
         usbReport<command::UsbProgress, 1, 64>(stage);
         stage.receive(command::UsbState, 1);
     }},
    {"usbMenuWindow", "link-lost",
     [](Stage& stage) {
         usbReport<command::UsbProgress, 1, 64>(stage);
         stage.loseController();
     }},
    {"usbMenuWindow", "without-link",
     [](Stage& stage) {
         withStick(stage);
         stage.loseController();
         stage.touch(QStringLiteral("exportUserTile"));
     }},
    {"usbMenuWindow", "fault-while-copying",
     [](Stage& stage) {
         usbReport<command::UsbProgress, 1, 64>(stage);
         stage.findFaults(0x10);
     }},
    {"usbMenuWindow", "upgrading", usbReport<command::FirmwareProgress, 10, 64>},
    {"usbMenuWindow", "upgraded", usbReport<command::FirmwareProgress, 0, 0>},
    {"usbMenuWindow", "upgrade-failed", usbReport<command::FirmwareProgress, 1, 0>},
    {"usbMenuWindow", "before-log-import",
     [](Stage& stage) {
         withStick(stage);
         stage.touch(QStringLiteral("importLogTile"));
     }},
    {"usbUploadFileSelector", "chosen", [](Stage& stage) { stage.touchRow(4); }},
    {"usbUploadFileSelector", "folder", [](Stage& stage) { stage.touchRow(1); }},
    {"usbUploadFileSelector", "empty-folder", [](Stage& stage) { stage.touchRow(0); }},
    {"UsbOutLogWindow", "all", [](Stage& stage) { stage.touch(QStringLiteral("rangeToggle")); }},
    {"UsbOutLogWindow", "keypad",
     [](Stage& stage) {
         stage.touch(QStringLiteral("fromField"));
         stage.touch(QStringLiteral("key_2"));
     }},
};

}  // namespace

AreaStates usbStates() {
    return kStates;
}
