#include "tools/gallery/gallery_states.h"

#include <QScrollBar>

#include "link/command_code.h"
#include "screens/recognize/meal_count_form.h"
#include "screens/recognize/operation_settings_form.h"
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

/// A combo with more choices than its list shows at once.
void longComboList(Stage& stage) {
    auto* row = stage.add<ListRow>(QRect(16, 88, 448, 76));
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

void listEnd(Stage& stage) {
    QScrollBar* bar = stage.active<QWidget>()->findChild<ScrollList*>()->verticalScrollBar();
    bar->setValue(bar->maximum());
}

void mealCounts(Stage& stage) {
    StatusReport report{};
    report.meals = {128, 64, 7, 0};
    stage.receive(command::SystemStatus, 0,
                  QByteArray(reinterpret_cast<const char*>(&report), sizeof report));
    MealCountForm::open(stage.active<QWidget>());
}

void wrongPassword(Stage& stage, int times) {
    for (int i = 0; i < times; ++i) {
        stage.touch(QStringLiteral("key_1"));
        stage.touch(QStringLiteral("forwardButton"));
    }
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
    {"liveWindow", "meal-counts", mealCounts},
    {"tcpIpWindow", "keypad-address",
     [](Stage& stage) { keypad(stage, InputField::Address, "1 9 2 ."); }},
    {"enviSound_Alarm", "long-list", longComboList},
    {"workMenuWindow", "end", listEnd},
    {"workMenuWindow", "mode-list", [](Stage& stage) { stage.touch(QStringLiteral("modeCombo")); }},
    {"workMenuWindow", "keypad",
     [](Stage& stage) { stage.touch(QStringLiteral("weekdayInTime")); }},
    {"workMenuWindow", "keypad-low-field",
     [](Stage& stage) { stage.touch(QStringLiteral("saturdayOutTime")); }},
    {"workMenuWindow", "error",
     [](Stage& stage) { stage.active<OperationSettingsForm>()->ShowPopup(10, 0); }},
    {"workMenuWindow", "saved",
     [](Stage& stage) { stage.active<OperationSettingsForm>()->ShowPopup(7, 0); }},
    {"foodMenuWindow", "end", listEnd},
    {"foodMenuWindow", "duplicate-use-list",
     [](Stage& stage) { stage.touch(QStringLiteral("duplicateUseCombo")); }},
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
    {"InputAdminPassword", "wrong", [](Stage& stage) { wrongPassword(stage, 1); }},
    // Two more, and the entry stays locked.
    {"InputAdminPassword", "locked", [](Stage& stage) { wrongPassword(stage, 2); }},
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
