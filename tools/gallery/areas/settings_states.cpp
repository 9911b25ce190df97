#include "tools/gallery/area_states.h"

#include <QScrollBar>

#include "screens/settings/operation_settings_form.h"
#include "tools/gallery/stage.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/scroll_list.h"

namespace {

/// A combo with more choices than its list shows at once.
void longComboList(Stage& stage) {
    auto* row = stage.add<ListRow>(QRect(16, 640, 448, 76));
    row->setTextKey(QStringLiteral("Button_AlarmSound"));
    auto* combo = new Combo(row);
    combo->setObjectName(QStringLiteral("soundCombo"));
    combo->setTitleKey(QStringLiteral("Button_AlarmSound"));
    QStringList keys;
    for (int i = 0; i < 20; ++i)
        keys.append(QStringLiteral("Button_RecogFailSound"));
    combo->setItemKeys(keys);
    combo->setCurrentIndex(12);
    stage.showAdded();
    stage.touch(combo->objectName());
}

/// The attendance mode is not automatic: its times do not count.
void manualMode(Stage& stage) {
    stage.touch(QStringLiteral("modeCombo"));
    stage.touch(QStringLiteral("item1"));
}

void listEnd(Stage& stage) {
    QScrollBar* bar = stage.active<QWidget>()->findChild<ScrollList*>()->verticalScrollBar();
    bar->setValue(bar->maximum());
}

/// The time in @p field lies within another; @p closed tells that one has read so.
void overlap(Stage& stage, const char* field, bool closed) {
    stage.touch(QLatin1String(field));
    for (const char* key : {"key_0", "key_8", "key_0", "key_0", "key_1", "key_2", "key_0", "key_0"})
        stage.touch(QLatin1String(key));
    stage.touch(QStringLiteral("forwardButton"));
    if (closed)
        stage.touch(QStringLiteral("dialogOkButton"));
}

constexpr AreaState kStates[] = {
    {"enviSound_Alarm", "long-list", longComboList},
    {"workMenuWindow", "end", listEnd},
    {"workMenuWindow", "mode-list", [](Stage& stage) { stage.touch(QStringLiteral("modeCombo")); }},
    {"workMenuWindow", "mode-list-pressed",
     [](Stage& stage) {
         stage.touch(QStringLiteral("modeCombo"));
         stage.press(QStringLiteral("item3"));
     }},
    {"workMenuWindow", "door-list",
     [](Stage& stage) { stage.touch(QStringLiteral("doorOpenCombo")); }},
    {"workMenuWindow", "door-longest-choice",
     [](Stage& stage) {
         stage.touch(QStringLiteral("doorOpenCombo"));
         stage.touch(QStringLiteral("item2"));
     }},
    {"workMenuWindow", "manual-mode", manualMode},
    {"workMenuWindow", "save-pressed",
     [](Stage& stage) { stage.press(QStringLiteral("forwardButton")); }},
    {"workMenuWindow", "keypad",
     [](Stage& stage) { stage.touch(QStringLiteral("weekdayInTime")); }},
    {"workMenuWindow", "keypad-typing",
     [](Stage& stage) {
         stage.touch(QStringLiteral("weekdayInTime"));
         for (const char* key : {"key_clear", "key_0", "key_8", "key_3", "key_0", "key_1"})
             stage.touch(QLatin1String(key));
     }},
    {"workMenuWindow", "keypad-low-field",
     [](Stage& stage) { stage.touch(QStringLiteral("saturdayOutTime")); }},
    {"workMenuWindow", "error",
     [](Stage& stage) { stage.active<OperationSettingsForm>()->ShowPopup(10, 0); }},
    {"workMenuWindow", "saved",
     [](Stage& stage) { stage.active<OperationSettingsForm>()->ShowPopup(7, 0); }},
    {"workMenuWindow", "saving",
     [](Stage& stage) { stage.touch(QStringLiteral("forwardButton")); }},
    {"workMenuWindow", "refused",
     [](Stage& stage) {
         stage.active<OperationSettingsForm>()->ShowPopup(SettingsForm::Refused, 0);
     }},
    {"workMenuWindow", "no-answer",
     [](Stage& stage) {
         stage.active<OperationSettingsForm>()->ShowPopup(SettingsForm::NoAnswer, 0);
     }},
    {"workMenuWindow", "no-link",
     [](Stage& stage) {
         stage.loseController();
         stage.touch(QStringLiteral("forwardButton"));
     }},
    {"workMenuWindow", "overlap", [](Stage& stage) { overlap(stage, "weekdayOutTime", false); }},
    {"workMenuWindow", "overlap-rows",
     [](Stage& stage) { overlap(stage, "weekdayOutTime", true); }},
    {"foodMenuWindow", "end", listEnd},
    {"foodMenuWindow", "overlap", [](Stage& stage) { overlap(stage, "supperTime", false); }},
    {"foodMenuWindow", "overlap-rows", [](Stage& stage) { overlap(stage, "supperTime", true); }},
    {"foodMenuWindow", "duplicate-use-list",
     [](Stage& stage) { stage.touch(QStringLiteral("duplicateUseCombo")); }},
};

}  // namespace

AreaStates settingsStates() {
    return kStates;
}
