#include "tools/gallery/area_states.h"

#include "app/management_link.h"
#include "link/command_code.h"
#include "tools/gallery/stage.h"
#include "ui/dialog_form.h"

namespace {

void restartAfterUpgrade(Stage& stage, const char* marker) {
    stage.root().write(marker, {});
    stage.restart();
}

/// A dialog with such buttons.
void dialog(Stage& stage, DialogForm::ButtonType buttons, DialogForm::Icon icon, bool danger) {
    auto* dialog = stage.add<DialogForm>();
    dialog->setIcon(icon);
    dialog->setTextKey(QStringLiteral("ListItem_LogStoreNearlyFull"));
    dialog->setButtonType(buttons);
    dialog->setDanger(danger);
    stage.showAdded();
}

void typedPassword(Stage& stage) {
    for (const char* key : {"key_1", "key_2", "key_3"})
        stage.touch(QLatin1String(key));
    stage.press(QStringLiteral("key_4"));
}

void wrongPassword(Stage& stage, int times) {
    for (int i = 0; i < times; ++i) {
        stage.touch(QStringLiteral("key_1"));
        stage.touch(QStringLiteral("forwardButton"));
    }
}

/// A firmware archive of @p total bytes that is half here.
void downloading(Stage& stage, qint64 total) {
    stage.open(QStringLiteral("stayWindow"));
    stage.window().fwFileDownloadStart(QString());
    emit stage.window().managementLink()->downloads().progress(
        1000000, total, DownloadManager::speedText(2000000, 1000));
}

constexpr AreaState kStates[] = {
    {"bootWindow", "upgraded",
     [](Stage& stage) { restartAfterUpgrade(stage, "/mnt/data/fw_upgrade_ok"); }},
    {"bootWindow", "upgrade-failed",
     [](Stage& stage) { restartAfterUpgrade(stage, "/mnt/data/fw_upgrade_fail"); }},
    {"stayWindow", "longest-date",
     [](Stage& stage) { stage.setTime(QDateTime(QDate(2026, 9, 30), QTime(22, 58))); }},
    {"stayWindow", "fault", [](Stage& stage) { stage.findFaults(0x10); }},
    {"stayWindow", "faults", [](Stage& stage) { stage.findFaults(0x54); }},
    {"stayWindow", "receiving-settings", [](Stage& stage) { stage.window().ShowPopup(1, 5); }},
    {"stayWindow", "network-failed", [](Stage& stage) { stage.window().ShowPopup(2, 5); }},
    {"stayWindow", "controller-lost", [](Stage& stage) { stage.loseController(); }},
    {"stayWindow", "logs-full", [](Stage& stage) { stage.receive(command::LogStoreReport, 1); }},
    {"stayWindow", "logs-deleted", [](Stage& stage) { stage.receive(command::LogStoreReport, 0); }},
    {"stayWindow", "firmware-failed",
     [](Stage& stage) { stage.receive(command::FirmwareUpdateAnswer, 1); }},
    {"zelMenuWindow", "pressed", [](Stage& stage) { stage.press(QStringLiteral("menuWorkTile")); }},
    {"zelMenuWindow", "meals", [](Stage& stage) { stage.changeSettings(stage.mealSettings()); }},
    {"zelMenuWindow", "other-operation",
     [](Stage& stage) { stage.window().changeWindow(QStringLiteral("foodMenuWindow")); }},
    {"zelMenuWindow", "dialog",
     [](Stage& stage) { dialog(stage, DialogForm::OkButton, DialogForm::Icon::None, false); }},
    {"zelMenuWindow", "dialog-question",
     [](Stage& stage) {
         dialog(stage, DialogForm::OkCancelButtons, DialogForm::Icon::Question, false);
     }},
    {"zelMenuWindow", "dialog-danger",
     [](Stage& stage) {
         dialog(stage, DialogForm::OkCancelButtons, DialogForm::Icon::Warning, true);
     }},
    {"zelMenuWindow", "dialog-danger-pressed",
     [](Stage& stage) {
         dialog(stage, DialogForm::OkCancelButtons, DialogForm::Icon::Warning, true);
         stage.press(QStringLiteral("dialogOkButton"));
     }},
    {"zelMenuWindow", "dialog-without-buttons",
     [](Stage& stage) { dialog(stage, DialogForm::NoButton, DialogForm::Icon::Info, false); }},
    {"upgradingWindow", "downloading", [](Stage& stage) { downloading(stage, 2000000); }},
    {"upgradingWindow", "downloading-without-length", [](Stage& stage) { downloading(stage, -1); }},
    {"upgradingWindow", "updated",
     [](Stage& stage) { stage.receive(command::FirmwareUpdateAnswer, 0); }},
    {"InputAdminPassword", "typed", typedPassword},
    {"InputAdminPassword", "wrong", [](Stage& stage) { wrongPassword(stage, 1); }},
    // Two more, and the entry stays locked.
    {"InputAdminPassword", "locked", [](Stage& stage) { wrongPassword(stage, 2); }},

};

}  // namespace

AreaStates shellStates() {
    return kStates;
}
