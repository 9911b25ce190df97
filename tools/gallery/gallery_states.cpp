#include "tools/gallery/gallery_states.h"

#include <QScrollBar>

#include "app/management_link.h"
#include "link/command_code.h"
#include "link/device_records.h"
#include "screens/settings/operation_settings_form.h"
#include "sim/common/portrait.h"
#include "tools/gallery/door_states.h"
#include "tools/gallery/stage.h"
#include "ui/combo.h"
#include "ui/dialog_form.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/scroll_list.h"
#include "ui/thumbnail_view.h"

namespace {

void restartAfterUpgrade(Stage& stage, const char* marker) {
    stage.root().write(marker, {});
    stage.restart();
}

template <class Record>
void receive(Stage& stage, unsigned short code, const Record& record) {
    stage.receive(code, 0, QByteArray(reinterpret_cast<const char*>(&record), sizeof record));
}

void faults(Stage& stage, quint32 word) {
    receive(stage, command::SelfCheck, word);
    stage.window().dev_selfChkrResult();
}

/// The keypad at a field of its kind, after some keys have been touched.
void keypad(Stage& stage, InputField::Characters characters, const char* keys,
            const char* option = "") {
    auto* field = stage.add<InputField>(QRect(16, 312, 448, 56));
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

/// A dialog with such buttons.
void dialog(Stage& stage, DialogForm::ButtonType buttons, DialogForm::Icon icon, bool danger) {
    const auto script = [&stage](const char* key) {
        return stage.window().getScript(QLatin1String(key));
    };
    auto* dialog = stage.add<DialogForm>();
    dialog->setIcon(icon);
    dialog->setText(script("ListItem_LogStoreNearlyFull"));
    dialog->setButtonType(buttons);
    dialog->setOkText(script("TopMenu_OK"));
    dialog->setCancelText(script("TopMenu_Cancel"));
    dialog->setDanger(danger);
    stage.showAdded();
}

void largePhoto(Stage& stage) {
    QPixmap photo;
    photo.loadFromData(portrait::jpeg(0));
    auto* thumbnail = stage.add<ThumbnailView>(QRect(28, 100, 128, 152));
    thumbnail->setObjectName(QStringLiteral("userPhoto"));
    thumbnail->setPhoto(photo);
    stage.showAdded();
    stage.touch(thumbnail->objectName());
}

/// The attendance mode is not automatic: its times do not count.
void manualMode(Stage& stage) {
    stage.touch(QStringLiteral("modeCombo"));
    stage.touch(QStringLiteral("item1"));
}

void typedPassword(Stage& stage) {
    for (const char* key : {"key_1", "key_2", "key_3"})
        stage.touch(QLatin1String(key));
    stage.press(QStringLiteral("key_4"));
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

/// The I/O test after @p done steps, of which the first @p passed have passed.
void factoryIo(Stage& stage, int done, int passed) {
    for (int step = 0; step < done; ++step) {
        if (step < passed)
            stage.receive(command::FactoryIoReport, static_cast<unsigned char>(step),
                          static_cast<unsigned char>(1));
        stage.receive(command::FactoryIoStepDone, static_cast<unsigned char>(step));
    }
}

void wrongPassword(Stage& stage, int times) {
    for (int i = 0; i < times; ++i) {
        stage.touch(QStringLiteral("key_1"));
        stage.touch(QStringLiteral("forwardButton"));
    }
}

using namespace DoorStates;

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

/// A firmware archive of @p total bytes that is half here.
void downloading(Stage& stage, qint64 total) {
    stage.open(QStringLiteral("stayWindow"));
    stage.window().fwFileDownloadStart(QString());
    emit stage.window().managementLink()->downloads().progress(
        1000000, total, DownloadManager::speedText(2000000, 1000));
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
    {"stayWindow", "access-event", [](Stage& stage) { recordedEvent(stage, true); }},
    {"stayWindow", "service-lost", serviceLost},
    {"stayWindow", "controller-lost", [](Stage& stage) { stage.loseController(); }},
    {"stayWindow", "logs-full", [](Stage& stage) { stage.receive(command::LogStoreReport, 1); }},
    {"stayWindow", "logs-deleted", [](Stage& stage) { stage.receive(command::LogStoreReport, 0); }},
    {"stayWindow", "firmware-failed",
     [](Stage& stage) { stage.receive(command::FirmwareUpdateAnswer, 1); }},
    {"stayWindow", "chosen-picture", chosenPicture},
    {"stayWindow", "asleep", asleep},
    {"liveWindow", "in", [](Stage& stage) { live(stage, Attendance, 1); }},
    {"liveWindow", "in-saturday", [](Stage& stage) { live(stage, Attendance, 1, Saturday); }},
    {"liveWindow", "out", [](Stage& stage) { live(stage, Attendance, 2); }},
    {"liveWindow", "out-saturday", [](Stage& stage) { live(stage, Attendance, 2, Saturday); }},
    {"liveWindow", "break", [](Stage& stage) { live(stage, Attendance, 3); }},
    {"liveWindow", "return", liveReturnOnly},
    {"liveWindow", "breakfast", [](Stage& stage) { live(stage, Meals, 1); }},
    {"liveWindow", "lunch", [](Stage& stage) { liveWithAllButtons(stage, Meals, 2); }},
    {"liveWindow", "dinner", [](Stage& stage) { live(stage, Meals, 3); }},
    {"liveWindow", "supper", [](Stage& stage) { live(stage, Meals, 4); }},
    {"liveWindow", "no-meal", [](Stage& stage) { live(stage, Meals, 0); }},
    {"liveWindow", "meal-counts", mealCounts},
    {"liveWindow", "tracking", [](Stage& stage) { face(stage, 1); }},
    {"liveWindow", "recognised", [](Stage& stage) { face(stage, 2); }},
    {"liveWindow", "unknown-face", [](Stage& stage) { face(stage, 3, 1); }},
    {"liveWindow", "refused-face", [](Stage& stage) { face(stage, 3, 2); }},
    {"liveWindow", "unknown-card", unknownCard},
    {"liveWindow", "visitor-call", visitorCall},
    {"liveWindow", "service-lost",
     [](Stage& stage) {
         face(stage, 3, 2);
         serviceLost(stage);
         recordedEvent(stage, false);
     }},
    {"liveWindow", "pressed", [](Stage& stage) { stage.press(QStringLiteral("menuButton")); }},
    {"liveWindow", "meal-pressed",
     [](Stage& stage) {
         live(stage, Meals, 1);
         stage.press(QStringLiteral("noti_layer"));
     }},
    {"recognizeWindow", "access", [](Stage& stage) { result(stage, 0, 0, Access, 0); }},
    {"recognizeWindow", "access-without-picture",
     [](Stage& stage) { result(stage, 2, 0, Access, 0); }},
    {"recognizeWindow", "access-long-name", [](Stage& stage) { result(stage, 4, 0, Access, 0); }},
    {"recognizeWindow", "longest-korean-name",
     [](Stage& stage) {
         longestName(stage, "김수한무거북이와두루미삼천갑자동방삭치치카포사리사리센타워리워리");
     }},
    {"recognizeWindow", "longest-japanese-name",
     [](Stage& stage) {
         longestName(stage, "寿限無寿限無五劫の擦り切れ海砂利水魚の水行末雲来末風来末食う寝る");
     }},
    {"recognizeWindow", "no-access-time", [](Stage& stage) { result(stage, 5, 1, Access, 0); }},
    {"recognizeWindow", "refusal-event",
     [](Stage& stage) {
         result(stage, 5, 1, Access, 0);
         recordedEvent(stage, false);
     }},
    {"recognizeWindow", "not-permitted", [](Stage& stage) { result(stage, 3, 2, Access, 0); }},
    {"recognizeWindow", "registered", [](Stage& stage) { result(stage, 6, 3, Access, 0); }},
    {"recognizeWindow", "meal-taken", [](Stage& stage) { result(stage, 1, 4, Meals, 2); }},
    {"recognizeWindow", "demonstration", demonstration},
    {"recognizeWindow", "question", [](Stage& stage) { question(stage, ""); }},
    {"recognizeWindow", "question-with-event",
     [](Stage& stage) {
         question(stage, "");
         recordedEvent(stage, true);
     }},
    {"recognizeWindow", "question-in", [](Stage& stage) { question(stage, "inButton"); }},
    {"recognizeWindow", "question-out", [](Stage& stage) { question(stage, "outButton"); }},
    {"recognizeWindow", "question-break", [](Stage& stage) { question(stage, "outDutyButton"); }},
    {"recognizeWindow", "question-return", [](Stage& stage) { question(stage, "inDutyButton"); }},
    {"recognizeWindow", "question-pressed",
     [](Stage& stage) {
         question(stage, "");
         stage.press(QStringLiteral("inButton"));
     }},
    {"recognizeWindow", "in-recorded", [](Stage& stage) { recorded(stage, 16); }},
    {"recognizeWindow", "out-recorded", [](Stage& stage) { recorded(stage, 17); }},
    {"recognizeWindow", "break-recorded", [](Stage& stage) { recorded(stage, 18); }},
    {"recognizeWindow", "return-recorded", [](Stage& stage) { recorded(stage, 19); }},
    {"recognizeWindow", "no-meal", [](Stage& stage) { result(stage, 1, 1, Meals, 0); }},
    {"recognizeWindow", "meal", [](Stage& stage) { meal(stage, 2, 0, false); }},
    {"recognizeWindow", "meal-several", [](Stage& stage) { meal(stage, 2, 1, false); }},
    {"recognizeWindow", "meal-most", [](Stage& stage) { meal(stage, 2, 98, false); }},
    {"recognizeWindow", "meal-pressed",
     [](Stage& stage) {
         meal(stage, 2, 1, false);
         stage.press(QStringLiteral("paymentButton"));
     }},
    {"recognizeWindow", "meal-paid", [](Stage& stage) { meal(stage, 4, 1, true); }},
    {"recognizeWindow", "armed", [](Stage& stage) { alarm(stage, 1); }},
    {"recognizeWindow", "disarmed", [](Stage& stage) { alarm(stage, 2); }},
    {"zelMenuWindow", "pressed", [](Stage& stage) { stage.press(QStringLiteral("menuWorkTile")); }},
    {"zelMenuWindow", "meals", [](Stage& stage) { stage.changeSettings(mealSettings(stage)); }},
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
         stage.active<WindowForm>()->peersChanged();
     }},
    {"usbMenuWindow", "without-link",
     [](Stage& stage) {
         withStick(stage);
         stage.touch(QStringLiteral("exportUserTile"));
     }},
    {"usbMenuWindow", "fault-while-copying",
     [](Stage& stage) {
         usbReport<command::UsbProgress, 1, 64>(stage);
         faults(stage, 0x10);
     }},
    {"usbMenuWindow", "upgrading", usbReport<command::FirmwareProgress, 10, 64>},
    {"usbMenuWindow", "upgraded", usbReport<command::FirmwareProgress, 0, 0>},
    {"usbMenuWindow", "upgrade-failed", usbReport<command::FirmwareProgress, 1, 0>},
    {"usbMenuWindow", "before-log-import",
     [](Stage& stage) {
         withStick(stage);
         stage.touch(QStringLiteral("importLogTile"));
     }},
    {"usbUploadFileSelector", "chosen",
     [](Stage& stage) { stage.touchRow(4); }},
    {"usbUploadFileSelector", "folder",
     [](Stage& stage) { stage.touchRow(1); }},
    {"usbUploadFileSelector", "empty-folder",
     [](Stage& stage) { stage.touchRow(0); }},
    {"UsbOutLogWindow", "all", [](Stage& stage) { stage.touch(QStringLiteral("rangeToggle")); }},
    {"UsbOutLogWindow", "keypad",
     [](Stage& stage) {
         stage.touch(QStringLiteral("fromField"));
         stage.touch(QStringLiteral("key_2"));
     }},
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
    {"enviSound_Alarm", "long-list", longComboList},
    {"workMenuWindow", "access-event", [](Stage& stage) { recordedEvent(stage, true); }},
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
    {"userEnrollMenuWindow", "pressed",
     [](Stage& stage) { stage.press(QStringLiteral("authFaceOrCardRow")); }},
    {"userSearch_idWindow", "keypad-digits",
     [](Stage& stage) { keypad(stage, InputField::Digits, "0 1 0 2 3 4 5", "010"); }},
    {"userSearch_InfoWindow", "photo", largePhoto},
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
    {"f_ioTestWindow", "passed", [](Stage& stage) { factoryIo(stage, 3, 3); }},
    {"f_ioTestWindow", "failed", [](Stage& stage) { factoryIo(stage, 2, 1); }},
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
