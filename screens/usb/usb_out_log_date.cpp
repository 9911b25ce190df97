#include "screens/usb/usb_out_log_date.h"

#include "app/window_shell.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_records.h"

namespace {

namespace transfer = command::transfer;

constexpr int kAllLogs = 0;  // of the range toggle
constexpr int kFirstYear = 2000;
constexpr int kLastYear = kFirstYear + 255;
constexpr int kPopupSeconds = 3;

enum Popup { kPopupDate, kPopupOrder, kPopupNoController };
constexpr ScreenText kTexts[] = {
    {kPopupDate, "ListItem_CheckInputDate", ScreenText::Error},
    {kPopupOrder, "ListItem_StartDateAfterEndDate", ScreenText::Error},
    {kPopupNoController, "ListItem_NoController", ScreenText::Error},
};

const QString kFormat = QStringLiteral("yyyy-MM-dd");

/// An invalid date when it is not whole, or not a day that a record can hold.
QDate dateIn(const InputField* field) {
    const QDate date = QDate::fromString(field->text(), kFormat);
    return date.year() >= kFirstYear && date.year() <= kLastYear ? date : QDate();
}

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}

}  // namespace

UsbOutLogDate::UsbOutLogDate(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {}

void UsbOutLogDate::built() {
    connect(ui_->topBar, &TopBar::forwardTouched, this, &UsbOutLogDate::exportButtonTouch);
    connect(ui_->rangeToggle, &Toggle::currentIndexChanged, this, &UsbOutLogDate::rangeTouch);
}

void UsbOutLogDate::windowInEvent() {
    FormScreen::windowInEvent();
    const QDate today = Clock::now().date();
    ui_->fromField->setText(QDate(today.year(), today.month(), 1).toString(kFormat));
    ui_->toField->setText(today.toString(kFormat));
    ui_->rangeToggle->setCurrentIndex(1);
    rangeTouch();
}

void UsbOutLogDate::rangeTouch() {
    const bool someDays = ui_->rangeToggle->currentIndex() != kAllLogs;
    ui_->fromField->setEnabled(someDays);
    ui_->toField->setEnabled(someDays);
}

void UsbOutLogDate::exportButtonTouch() {
    shell()->removeTouchKey();
    const bool all = ui_->rangeToggle->currentIndex() == kAllLogs;
    ExportDates dates{};
    if (!all) {
        const QDate from = dateIn(ui_->fromField);
        const QDate to = dateIn(ui_->toField);
        if (!from.isValid() || !to.isValid() || from > to) {
            const bool areDays = from.isValid() && to.isValid();
            popup_.show(areDays ? kPopupOrder : kPopupDate, kPopupSeconds);
            return;
        }
        dates = {byte(from.year() - kFirstYear), byte(from.month()), byte(from.day()),
                 byte(to.year() - kFirstYear),   byte(to.month()),   byte(to.day())};
    }
    if (!shell()->SendRecord(command::UsbExport, transfer::LogsOfDays,
                             all ? transfer::AllDays : transfer::SomeDays, dates)) {
        popup_.show(kPopupNoController, kPopupSeconds);
        return;
    }
    shell()->changeWindow(backTarget(), true);
    // A long copy is not to be cut off.
    shell()->StopMenuTimer();
}

void UsbOutLogDate::prevButtonTouch() {
    shell()->changeWindow(backTarget(), true);
}
