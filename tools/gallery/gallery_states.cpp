#include "tools/gallery/gallery_states.h"

#include <QScrollBar>

#include "link/command_code.h"
#include "tools/gallery/stage.h"
#include "ui/combo.h"
#include "ui/dialog_form.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/scroll_list.h"
#include "ui/wait_form.h"

namespace {

void restartAfterUpgrade(Stage& stage, const char* marker) {
    stage.root().write(marker, {});
    stage.restart();
}

void faults(Stage& stage, quint32 word) {
    stage.receive(command::SelfCheck, 0,
                  QByteArray(reinterpret_cast<const char*>(&word), sizeof word));
    stage.window().dev_selfChkrResult();
}

void dangerousQuestion(Stage& stage) {
    auto* dialog = stage.add<DialogForm>();
    dialog->setButtonType(DialogForm::OkCancelButtons);
    dialog->setIcon(DialogForm::Icon::Warning);
    dialog->setDanger(true);
    dialog->setText(stage.script("ListItem_LogStoreNearlyFull"));
    dialog->setOkText(stage.script("TopMenu_OK"));
    dialog->setCancelText(stage.script("TopMenu_Cancel"));
    stage.showAdded();
}

void wait(Stage& stage, int percent) {
    auto* dialog = stage.add<WaitForm>();
    dialog->setText(stage.script("Info_DownloadingSettingsManager"));
    dialog->setProgress(percent);
    stage.showAdded();
}

/// The keypad at a field of its kind, after some keys have been touched.
void keypad(Stage& stage, InputField::Characters characters, const char* keys,
            const char* option = "") {
    auto* field = stage.add<InputField>(QRect(16, 720, 448, 56));
    field->setObjectName(QStringLiteral("keypadField"));
    field->setAllowedCharacters(characters);
    stage.showAdded();
    stage.window().showTouchKey(field);
    stage.window().setTouchKeyOpt(QLatin1String(option));
    const QStringList names = QString::fromUtf8(keys).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& name : names)
        stage.touch(QStringLiteral("key_") + name);
}

void comboList(Stage& stage, int items) {
    auto* row = stage.add<ListRow>(QRect(16, 88, 448, 76));
    row->setTextKey(QStringLiteral("Button_AlarmSound"));
    auto* combo = new Combo(row);
    combo->setObjectName(QStringLiteral("soundCombo"));
    combo->setTitleKey(QStringLiteral("Button_AlarmSound"));
    QStringList keys;
    for (int i = 0; i < items; ++i)
        keys.append(QStringLiteral("Button_RecogFailSound"));
    combo->setItemKeys(keys);
    combo->setCurrentIndex(1);
    stage.showAdded();
    stage.touch(combo->objectName());
}

void touches(Stage& stage, const char* names) {
    const QStringList list = QString::fromUtf8(names).split(QLatin1Char(' '));
    for (const QString& name : list)
        stage.touch(name);
}

void scrollToEnd(Stage& stage) {
    QScrollBar* bar =
        stage.window().getActivateWindowForm()->findChild<ScrollList*>()->verticalScrollBar();
    bar->setValue(bar->maximum());
}

void lockedPassword(Stage& stage) {
    const auto* field = stage.window().getActivateWindowForm()->findChild<InputField*>();
    while (field->isEnabled())
        touches(stage, "key_1 forwardButton");
}

struct NamedState {
    const char* title;
    const char* name;
    void (*arrange)(Stage& stage);
};

constexpr NamedState kStates[] = {
    {"bootWindow", "upgraded",
     [](Stage& stage) { restartAfterUpgrade(stage, "/mnt/data/fw_upgrade_ok"); }},
    {"bootWindow", "upgrade-failed",
     [](Stage& stage) { restartAfterUpgrade(stage, "/mnt/data/fw_upgrade_fail"); }},
    {"stayWindow", "longest-date",
     [](Stage& stage) { stage.setTime(QDateTime(QDate(2026, 9, 30), QTime(22, 58))); }},
    {"stayWindow", "fault", [](Stage& stage) { faults(stage, 0x10); }},
    {"stayWindow", "faults", [](Stage& stage) { faults(stage, 0x54); }},
    {"stayWindow", "receiving-settings", [](Stage& stage) { stage.window().ShowPopup(1, 5); }},
    {"stayWindow", "network-failed", [](Stage& stage) { stage.window().ShowPopup(2, 5); }},
    {"stayWindow", "access-event", [](Stage& stage) { stage.receive(command::AccessEvent); }},
    {"stayWindow", "logs-full", [](Stage& stage) { stage.receive(command::LogStoreReport, 1); }},
    {"stayWindow", "logs-deleted", [](Stage& stage) { stage.receive(command::LogStoreReport, 0); }},
    {"stayWindow", "firmware-updated",
     [](Stage& stage) { stage.receive(command::FirmwareUpdateAnswer, 0); }},
    {"stayWindow", "firmware-failed",
     [](Stage& stage) { stage.receive(command::FirmwareUpdateAnswer, 1); }},
    {"zelMenuWindow", "dangerous-question", dangerousQuestion},
    {"zelMenuWindow", "wait", [](Stage& stage) { wait(stage, -1); }},
    {"zelMenuWindow", "wait-percent", [](Stage& stage) { wait(stage, 64); }},
    {"userMenuWindow", "too-many-users",
     [](Stage& stage) { stage.receive(command::EnrolmentRefused, 1); }},
    {"userMenuWindow", "another-enrolment",
     [](Stage& stage) { stage.receive(command::EnrolmentRefused, 2); }},
    {"userMenuWindow", "no-response",
     [](Stage& stage) { stage.receive(command::EnrolmentRefused, 3); }},
    {"userMenuWindow", "deleted",
     [](Stage& stage) { stage.receive(command::UserDeleteResult, 0); }},
    {"userMenuWindow", "not-deleted",
     [](Stage& stage) { stage.receive(command::UserDeleteResult, 1); }},
    {"tcpIpWindow", "keypad-address",
     [](Stage& stage) { keypad(stage, InputField::Address, "1 9 2 ."); }},
    {"enviSound_Alarm", "combo-list", [](Stage& stage) { comboList(stage, 4); }},
    {"enviSound_Alarm", "combo-long-list", [](Stage& stage) { comboList(stage, 20); }},
    {"workMenuWindow", "end", scrollToEnd},
    {"workMenuWindow", "manual",
     [](Stage& stage) {
         touches(stage, "modeCombo item1");
         scrollToEnd(stage);
     }},
    {"workMenuWindow", "modes", [](Stage& stage) { touches(stage, "modeCombo"); }},
    {"workMenuWindow", "keypad-time",
     [](Stage& stage) { touches(stage, "weekdayOutTime key_0 key_8 key_3 key_0"); }},
    {"workMenuWindow", "half-a-time",
     [](Stage& stage) { touches(stage, "weekdayOutTime key_0 forwardButton"); }},
    {"workMenuWindow", "saving", [](Stage& stage) { touches(stage, "forwardButton"); }},
    {"workMenuWindow", "saved",
     [](Stage& stage) { stage.receive(command::OperationSettingsSaved); }},
    {"foodMenuWindow", "end", scrollToEnd},
    {"foodMenuWindow", "overlap", [](Stage& stage) { touches(stage, "forwardButton"); }},
    {"userSearch_idWindow", "keypad-digits",
     [](Stage& stage) { keypad(stage, InputField::Digits, "", "010"); }},
    {"userSearch_InfoWindow", "keypad-first-page",
     [](Stage& stage) { keypad(stage, InputField::Any, ""); }},
    {"userSearch_InfoWindow", "keypad-hangul",
     [](Stage& stage) {
         // Only in Korean the Hangul page is the first.
         keypad(stage, InputField::Any,
                stage.language() == 0 ? "ㅎ ㅏ ㄴ ㄱ ㅡ ㄹ" : "hangul ㅎ ㅏ ㄴ ㄱ ㅡ ㄹ");
     }},
    {"userSearch_InfoWindow", "keypad-latin-shift",
     [](Stage& stage) { keypad(stage, InputField::Latin, "z e l shift", ".com"); }},
    {"userSearch_InfoWindow", "keypad-symbols",
     [](Stage& stage) { keypad(stage, InputField::Latin, "symbols"); }},
    {"userSearch_InfoWindow", "keypad-more-symbols",
     [](Stage& stage) { keypad(stage, InputField::Latin, "symbols shift"); }},
    {"InputAdminPassword", "wrong",
     [](Stage& stage) { touches(stage, "key_1 key_2 forwardButton key_3"); }},
    {"InputAdminPassword", "locked", lockedPassword},
};

}  // namespace

void GalleryState::show(Stage& stage) const {
    stage.open(title);
    if (arrange != nullptr)
        arrange(stage);
}

QVector<GalleryState> galleryStates(const MainWindow& window) {
    QVector<GalleryState> states;
    int number = 0;
    for (const WindowForm* screen : window.windowList()) {
        const QString title = screen->getTitle();
        const QString file =
            QStringLiteral("%1-%2").arg(++number, 2, 10, QLatin1Char('0')).arg(title);
        states.append({file, title, nullptr});
        for (const NamedState& state : kStates) {
            if (title == QLatin1String(state.title))
                states.append(
                    {file + QLatin1Char('-') + QLatin1String(state.name), title, state.arrange});
        }
    }
    return states;
}
