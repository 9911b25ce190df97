#include "screens/settings/operation_settings_form.h"

#include <QScrollBar>
#include <iterator>

#include "app/main_window.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "screens/settings/time_range.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/scroll_list.h"
#include "ui/top_bar.h"

namespace {

constexpr int kPopupSaved = 7;

constexpr auto Error = DialogForm::Icon::Error;

/// By number, from 1 on.
constexpr PopupText kCommonPopups[] = {
    {"ListItem_SetATime", Error},
    {"ListItem_SetATime", Error},
    {"ListItem_SetATime", Error},
    {"ListItem_SetATime", Error},
    {"ListItem_StartimeEndtimeSame", Error},
    {"ListItem_IntimeOuttimeSame", Error},
    {"ListItem_ConfigurationComplete", DialogForm::Icon::Pass},
};
static_assert(std::size(kCommonPopups) == OperationSettingsForm::kFirstOwnPopup - 1);

OperationSettings settingsOf(const OperationBlock& block) {
    return {
        block.attendanceMode,  block.lunchOff,     block.saveSimpleAccess,    block.supperOff,
        block.doorOpenSetting, block.doorOpenTime, block.forcedOpenOff,       block.forcedCloseOff,
        block.forcedOpen,      block.forcedClose,  block.saveRecognitionFail, block.mealCountView};
}

OperationTimes timesOf(const OperationBlock& block) {
    return {block.weekdayIn, block.weekdayOut, block.saturdayIn, block.saturdayOut,
            block.holidayRule};
}

}  // namespace

OperationSettingsForm::OperationSettingsForm(QWidget* parent, const QString& title,
                                             const PopupText* popups, int popupCount)
    : TitledForm(parent, title), popups_(popups), popupCount_(popupCount), popup_(this) {}

void OperationSettingsForm::connectForm(TopBar* bar, ScrollList* list,
                                        const QVector<TimeField>& times) {
    TitledForm::connectForm(bar);
    connect(bar, &TopBar::forwardTouched, this, [this] {
        MainWindow::getMainWindow()->removeTouchKey();
        saveButtonTouch();
    });
    list_ = list;
    times_ = times;
}

void OperationSettingsForm::windowInEvent() {
    TitledForm::windowInEvent();
    operation_ = MainWindow::getMainWindow()->menuRecord().operation;
    for (const TimeField& time : qAsConst(times_))
        time.field->setText(TimeRange::betweenTimeText(operation_.*time.range));
    showRecord();
    list_->verticalScrollBar()->setValue(0);
}

void OperationSettingsForm::choose(Combo* combo, int choice) {
    combo->setCurrentIndex(choice < combo->count() ? choice : 0);
}

std::uint8_t OperationSettingsForm::chosen(const Combo* combo) {
    return static_cast<std::uint8_t>(combo->currentIndex());
}

bool OperationSettingsForm::readTimes() {
    for (const TimeField& time : qAsConst(times_)) {
        const TimeRange::Reading reading =
            TimeRange::getBetweenTime(time.field->text(), &(operation_.*time.range));
        if (reading == TimeRange::Valid)
            continue;
        list_->reveal(time.field);
        ShowPopup(reading == TimeRange::OutOfRange ? time.outOfRange : time.malformed,
                  kPopupSeconds);
        return false;
    }
    return true;
}

void OperationSettingsForm::save() {
    MainWindow* shell = MainWindow::getMainWindow();
    // Other settings may have arrived since the screen came up.
    _gui_menu_ record = shell->menuRecord();
    record.operation = operation_;
    shell->SetGuiMenu(&record);
    shell->SendRecord(command::SaveOperationSettings, command::save::Settings, 0,
                      settingsOf(operation_));
    setTime();
}

void OperationSettingsForm::setTime() {
    MainWindow::getMainWindow()->SendRecord(command::SaveOperationTimes, command::save::Settings, 0,
                                            timesOf(operation_));
}

void OperationSettingsForm::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::OperationSettingsSaved)
        SetSettingResult(message.p1);
}

void OperationSettingsForm::SetSettingResult(unsigned char result) {
    if (result == command::answer::Done)
        ShowPopup(kPopupSaved, kPopupSeconds);
}

void OperationSettingsForm::ShowPopup(int code, int seconds) {
    const int own = code - kFirstOwnPopup;
    if (code >= 1 && own < 0)
        popup_.show(kCommonPopups[code - 1], seconds);
    else if (own >= 0 && own < popupCount_)
        popup_.show(popups_[own], seconds);
}
